// One sample of a recorder: what it does in which order, and what it leaves when it fails.
#include <cmath>

#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/SamplingStep.h"
#include "Tests/NetworkMonitor/Metrics/RecorderMachine.h"
#include "Tests/NetworkMonitor/Metrics/ScriptedMetricsStorage.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using enum ConnectionBandwidthClass;

/// Writes down what it is asked: the bytes sent before and now, and the seconds between.
class RecordingAnalyzer final : public ConnectionBandwidthAnalyzer {
 public:
  [[nodiscard]] ConnectionBandwidthClass evaluate(
      const ConnectionMetrics& oldMetrics, const ConnectionMetrics& newMetrics,
      std::chrono::duration<double> interval) const override {
    questions += std::to_string(oldMetrics.sentBytes) + "->" +
                 std::to_string(newMetrics.sentBytes) + " in " +
                 std::to_string(std::lround(interval.count())) + "; ";
    return answer;
  }

  mutable std::string questions;
  ConnectionBandwidthClass answer = idle;
};

class SamplingStepTest : public testing::Test {
 protected:
  SamplingStepTest() {
    machine.setCounters("en0", 10, 20);
    machine.reader->beforeReading([this] { storage->write("read"); });
  }

  /// The outcome of a sample, and in `storage->diary` what it did.
  std::string sample() {
    storage->diary.clear();
    return textOf(recorder->onceSync());
  }
  void bootAt(std::chrono::nanoseconds sinceNow) {
    machine.kernel.setBootTime(
        machine.clock.now() +
        std::chrono::duration_cast<std::chrono::system_clock::duration>(sinceNow));
  }

  RecorderMachine machine;
  const std::shared_ptr<ScriptedMetricsStorage> storage =
      std::make_shared<ScriptedMetricsStorage>(machine.clock);
  const std::shared_ptr<RecordingAnalyzer> analyzer = std::make_shared<RecordingAnalyzer>();
  const std::shared_ptr<Recorder> recorder = machine.recorderOver(storage, analyzer);
};

TEST_F(SamplingStepTest, LocksReadsRegistersSavesAndUnlocks) {
  machine.setCounters("en1", 1, 2);
  EXPECT_EQ(sample(), "en0 10/20, en1 1/2");
  EXPECT_EQ(storage->diary,
            "lock read en0.original en0.adjusted en1.original en1.adjusted save unlock");
}

TEST_F(SamplingStepTest, LockErrorEndsTheStep) {
  storage->lockFailure = LockError{.value = LockError::Case::lockTimeout, .underlying = {}};
  EXPECT_EQ(sample(), "failed: " + describe(*storage->lockFailure));
  EXPECT_EQ(storage->diary, "lock");
}

TEST_F(SamplingStepTest, StorageOfAnEarlierBootIsResetAndSavedBeforeTheReading) {
  storage->date = machine.clock.now() - 10s;
  bootAt(-9s);
  sample();
  EXPECT_EQ(storage->diary, "lock reset save read en0.original en0.adjusted save unlock");
}

TEST_F(SamplingStepTest, StorageOfThisBootIsNotReset) {
  for (const auto boot : {-10s, -11s, -1000s}) {
    storage->date = machine.clock.now() - 10s;
    bootAt(boot);
    sample();
    EXPECT_EQ(storage->diary, "lock read en0.original en0.adjusted save unlock");
  }
}

TEST_F(SamplingStepTest, UnknownBootResetsNothing) {
  storage->date = machine.clock.now() - 24h;
  sample();
  EXPECT_EQ(storage->diary, "lock read en0.original en0.adjusted save unlock");
}

TEST_F(SamplingStepTest, StorageNeverRegisteredIsNotReset) {
  bootAt(-9s);
  sample();
  EXPECT_EQ(storage->diary, "lock read en0.original en0.adjusted save unlock");
}

TEST_F(SamplingStepTest, StorageThatDoesNotPersistIsNeverReset) {
  const auto memory = std::make_shared<InMemoryConnectionMetricsStorage>(machine.clock);
  const auto inMemory = machine.recorderOver(memory);
  static_cast<void>(inMemory->onceSync());
  machine.setCounters("en0", 15, 20);
  machine.clock.advance(10s);
  bootAt(-1s);
  EXPECT_EQ(textOf(inMemory->onceSync()), "en0 5/0");
}

TEST_F(SamplingStepTest, SaveErrorAfterTheResetEndsTheStep) {
  storage->date = machine.clock.now() - 10s;
  bootAt(-9s);
  storage->saveFailure = MetricsSaveError{"the disk is full"};
  EXPECT_EQ(sample(), "failed: the disk is full");
  EXPECT_EQ(storage->diary, "lock reset save");
}

TEST_F(SamplingStepTest, ReadingErrorEndsTheStepAndLeavesTheLock) {
  machine.reader->setFailing(true);
  EXPECT_EQ(sample(), "failed: the counters of the network interfaces could not be read");
  EXPECT_EQ(storage->diary, "lock read");
}

TEST_F(SamplingStepTest, SaveErrorLeavesTheRegistrationsAndTheLock) {
  storage->saveFailure = MetricsSaveError{"the disk is full"};
  EXPECT_EQ(sample(), "failed: the disk is full");
  EXPECT_EQ(storage->diary, "lock read en0.original en0.adjusted save");
  EXPECT_EQ(textOf(recorder->allMetrics()), "en0 10/20");
}

TEST_F(SamplingStepTest, UnlockErrorFailsTheStepAfterTheSave) {
  storage->unlockFailure = LockError{.value = LockError::Case::alreadyUnlocked, .underlying = {}};
  EXPECT_EQ(sample(), "failed: " + describe(*storage->unlockFailure));
  EXPECT_EQ(storage->diary, "lock read en0.original en0.adjusted save unlock");
  EXPECT_EQ(textOf(recorder->allMetrics()), "en0 10/20");
}

TEST_F(SamplingStepTest, FailedStepChangesNoClassAndSendsNoEvent) {
  sample();
  int events = 0;
  const Subscription subscription =
      recorder->eventsPublisher().subscribe([&events](const Recorder::Event&) { ++events; });
  analyzer->answer = high;
  storage->saveFailure = MetricsSaveError{"the disk is full"};
  sample();
  storage->saveFailure.reset();
  storage->unlockFailure = LockError{.value = LockError::Case::unlockFailed, .underlying = {}};
  sample();
  EXPECT_EQ(recorder->currentBandwidthClass(), idle);
  EXPECT_EQ(events, 0);

  storage->unlockFailure.reset();
  sample();
  EXPECT_EQ(recorder->currentBandwidthClass(), high);
  EXPECT_EQ(events, 1);
}

TEST_F(SamplingStepTest, FailedFirstSampleLeavesTheFirstToTheNext) {
  const auto inMemory =
      machine.recorderOver(std::make_shared<InMemoryConnectionMetricsStorage>(machine.clock));
  machine.reader->setFailing(true);
  EXPECT_FALSE(inMemory->onceSync());
  machine.reader->setFailing(false);
  EXPECT_EQ(textOf(inMemory->onceSync()), "en0 0/0");
}

TEST_F(SamplingStepTest, FirstSampleOfACappedReaderTakesTheCountersAsTheyAre) {
  EXPECT_EQ(sample(), "en0 10/20");
}

TEST_F(SamplingStepTest, CountersAreCarriedForwardFromSampleToSample) {
  sample();
  machine.setCounters("en0", 4'294'967'000, 20);
  EXPECT_EQ(sample(), "en0 4294967000/20");
  machine.setCounters("en0", 100, 25);
  EXPECT_EQ(sample(), "en0 4294967395/25");
  machine.setCounters("en0", 150, 25);
  EXPECT_EQ(sample(), "en0 4294967445/25");
}

TEST_F(SamplingStepTest, CountersOfAnUncappedReaderAreTheReadingUnchanged) {
  machine.reader->set32bitCapped(false);
  sample();
  machine.setCounters("en0", 5, 1'000'000'000'000);
  EXPECT_EQ(sample(), "en0 5/1000000000000") << "fewer sent than before: taken as it is";
}

TEST_F(SamplingStepTest, InMemoryTheFirstSampleIsZeroAndTheSecondTheDeltas) {
  const auto memory = std::make_shared<InMemoryConnectionMetricsStorage>(machine.clock);
  const auto inMemory = machine.recorderOver(memory);
  EXPECT_EQ(textOf(inMemory->onceSync()), "en0 0/0");
  EXPECT_EQ(memory->metrics("en0", ConnectionMetricsType::adjusted),
            ConnectionMetrics::initial(1500));
  EXPECT_EQ(memory->metrics("en0", ConnectionMetricsType::original)->sentBytes, 10U);

  machine.setCounters("en0", 17, 60);
  EXPECT_EQ(textOf(inMemory->onceSync()), "en0 7/40");
}

TEST_F(SamplingStepTest, InMemoryAnInterfaceThatComesLaterCountsFromItsOwnZero) {
  const auto inMemory =
      machine.recorderOver(std::make_shared<InMemoryConnectionMetricsStorage>(machine.clock));
  static_cast<void>(inMemory->onceSync());
  machine.setCounters("en1", 300, 400);
  EXPECT_EQ(textOf(inMemory->onceSync()), "en0 0/0, en1 300/400");
}

TEST_F(SamplingStepTest, InMemoryAnUncappedReaderJumpsFromZeroToTheReading) {
  machine.reader->set32bitCapped(false);
  const auto inMemory =
      machine.recorderOver(std::make_shared<InMemoryConnectionMetricsStorage>(machine.clock));
  EXPECT_EQ(textOf(inMemory->onceSync()), "en0 0/0");
  EXPECT_EQ(textOf(inMemory->onceSync()), "en0 10/20");
}

TEST_F(SamplingStepTest, AllSevenCountersAndTheMtuAreSampled) {
  const ConnectionMetrics all{.sentBytes = 1,
                              .recvBytes = 2,
                              .sentError = 3,
                              .recvError = 4,
                              .sentPacket = 5,
                              .recvPacket = 6,
                              .collisions = 7,
                              .mtu = 9000};
  machine.reader->set("en0", all);
  sample();
  EXPECT_EQ(recorder->metrics("en0"), all);
  EXPECT_EQ(storage->metrics("en0", ConnectionMetricsType::original), all);
}

TEST_F(SamplingStepTest, InterfaceThatIsGoneStaysWithItsLastCounters) {
  machine.setCounters("en1", 1, 2);
  sample();
  machine.reader->setCounters({});
  machine.setCounters("en0", 11, 21);
  EXPECT_EQ(sample(), "en0 11/21") << "a sample is of the interfaces that were read";
  EXPECT_EQ(textOf(recorder->allMetrics()), "en0 11/21, en1 1/2");
  machine.setCounters("en1", 5, 2);
  EXPECT_EQ(sample(), "en0 11/21, en1 5/2");
}

TEST_F(SamplingStepTest, ReadingWithoutInterfacesIsAnEmptySample) {
  machine.reader->setCounters({});
  EXPECT_EQ(sample(), "");
  EXPECT_EQ(storage->diary, "lock read save unlock");
}

TEST_F(SamplingStepTest, AnalyzerGetsAdjustedCountersAndTheTimeSinceTheLastRegistration) {
  machine.setCounters("en0", 4'294'967'000, 0);
  sample();
  machine.clock.advance(90s);
  machine.setCounters("en0", 100, 0);
  sample();
  EXPECT_EQ(analyzer->questions, "4294967000->4294967395 in 90; ");
}

TEST_F(SamplingStepTest, InterfaceWithoutAnEarlierSampleIsNotClassified) {
  analyzer->answer = veryHigh;
  sample();
  EXPECT_EQ(analyzer->questions, "");
  EXPECT_EQ(recorder->currentBandwidthClass(), idle);
}

TEST_F(SamplingStepTest, UnknownRegistrationDateIsNotClassified) {
  sample();
  storage->date.reset();
  analyzer->answer = veryHigh;
  sample();
  EXPECT_EQ(analyzer->questions, "");
  EXPECT_EQ(recorder->currentBandwidthClass(), idle);
}

TEST_F(SamplingStepTest, RegistrationDateOfASavedStorageHoldsForEveryInterface) {
  machine.setCounters("en1", 1, 0);
  sample();
  machine.clock.advance(90s);
  sample();
  EXPECT_EQ(analyzer->questions, "10->10 in 90; 1->1 in 90; ");
}

TEST_F(SamplingStepTest, RegistrationDateThatMovesIsReadAgainForEachInterface) {
  machine.setCounters("en1", 1, 0);
  const auto inMemory = machine.recorderOver(
      std::make_shared<InMemoryConnectionMetricsStorage>(machine.clock), analyzer);
  static_cast<void>(inMemory->onceSync());
  machine.clock.advance(90s);
  static_cast<void>(inMemory->onceSync());
  EXPECT_EQ(analyzer->questions, "0->0 in 90; 0->0 in 0; ");
}

TEST_F(SamplingStepTest, ClockThatStepsBackGivesANegativeInterval) {
  sample();
  machine.clock.stepWallClock(-60s);
  sample();
  EXPECT_EQ(analyzer->questions, "10->10 in -60; ");
}

TEST_F(SamplingStepTest, ClassIsTheHighestOfTheInterfaces) {
  const auto busy = machine.recorderOver(storage);
  for (const char* name : {"en0", "en1", "en2"}) machine.setCounters(name, 0, 0);
  static_cast<void>(busy->onceSync());
  machine.clock.advance(1s);
  machine.setCounters("en0", 0, 600'000);
  machine.setCounters("en1", 7'000'000, 0);
  static_cast<void>(busy->onceSync());
  EXPECT_EQ(busy->currentBandwidthClass(), high);
}

}  // namespace
}  // namespace lanternfold
