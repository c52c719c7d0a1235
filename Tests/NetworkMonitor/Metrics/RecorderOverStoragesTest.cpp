// The same recorder over each real storage: what is counted, what survives the program, and what a
// second program on the same file does.
#include <optional>

#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/RecordedConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/UserDefaultsConnectionMetricsStorage.h"
#include "Tests/NetworkMonitor/Metrics/RecorderMachine.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/FakeUserDefaults.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using enum ConnectionBandwidthClass;

/// A machine with a disk. `storage()` is what a program finds when it begins: a new object each
/// time, over the same memory, suite or file where there is one.
class StorageMachine : public RecorderMachine {
 public:
  StorageMachine() { files.makeFolder("/data"); }

  [[nodiscard]] std::shared_ptr<InMemoryConnectionMetricsStorage> inMemory() {
    return std::make_shared<InMemoryConnectionMetricsStorage>(clock);
  }
  [[nodiscard]] std::shared_ptr<UserDefaultsConnectionMetricsStorage> inUserDefaults() {
    return std::make_shared<UserDefaultsConnectionMetricsStorage>(
        UserDefaultsConnectionMetricsStorage::Environment{.clock = clock, .log = log},
        suites.standard());
  }
  [[nodiscard]] std::shared_ptr<FileConnectionMetricsStorage> inFile() {
    return std::make_shared<FileConnectionMetricsStorage>(
        FileConnectionMetricsStorage::Environment{
            .files = files, .clock = clock, .dispatch = dispatch, .log = log},
        "/data", "default");
  }

  FakeFileSystem files{clock};
  FakeUserDefaultsSuites suites;
};

struct InMemory {
  static constexpr const char* name = "InMemory";
  static auto storage(StorageMachine& machine) { return machine.inMemory(); }
};
struct InUserDefaults {
  static constexpr const char* name = "UserDefaults";
  static auto storage(StorageMachine& machine) { return machine.inUserDefaults(); }
};
struct InFile {
  static constexpr const char* name = "File";
  static auto storage(StorageMachine& machine) { return machine.inFile(); }
};

using ThreeKinds = testing::Types<InMemory, InUserDefaults, InFile>;
using PersistentKinds = testing::Types<InUserDefaults, InFile>;

class KindNames {
 public:
  template <typename Kind>
  static std::string GetName(int) {
    return Kind::name;
  }
};

template <typename Kind>
class RecorderStorageTest : public testing::Test {
 protected:
  [[nodiscard]] std::shared_ptr<Recorder> newProgram() {
    return machine.recorderOver(Kind::storage(machine));
  }
  /// A sample a second after whatever was before.
  std::string sample(Recorder& recorder, std::uint64_t sent, std::uint64_t received) {
    machine.clock.advance(1s);
    machine.setCounters("en0", sent, received);
    return textOf(recorder.onceSync());
  }

  StorageMachine machine;
};

template <typename Kind>
using RecorderOverAnyStorageTest = RecorderStorageTest<Kind>;
TYPED_TEST_SUITE(RecorderOverAnyStorageTest, ThreeKinds, KindNames);

TYPED_TEST(RecorderOverAnyStorageTest, GrowthAndWrapsAreCounted) {
  const auto recorder = this->newProgram();
  this->sample(*recorder, 0, 0);
  EXPECT_EQ(this->sample(*recorder, 100, 4'294'967'000), "en0 100/4294967000");
  EXPECT_EQ(this->sample(*recorder, 250, 100), "en0 250/4294967395");
  EXPECT_EQ(this->sample(*recorder, 250, 200), "en0 250/4294967495");
  EXPECT_EQ(textOf(recorder->allMetrics()), "en0 250/4294967495");
  EXPECT_EQ(recorder->metrics("en0")->mtu, 1500U);
}

TYPED_TEST(RecorderOverAnyStorageTest, WeekOfSamplesWithWrapsNeverGoesBackwards) {
  const auto recorder = this->newProgram();
  std::uint64_t sent = 0;
  std::uint64_t before = 0;
  for (int hour = 0; hour < 7 * 24; ++hour) {
    sent += 1'500'000'000;
    this->machine.clock.advance(1h);
    this->sample(*recorder, sent % (std::uint64_t{1} << 32), 0);
    const std::uint64_t now = recorder->metrics("en0")->sentBytes;
    ASSERT_GE(now, before);
    before = now;
  }
  EXPECT_GT(before, 50 * (std::uint64_t{1} << 32));
}

TYPED_TEST(RecorderOverAnyStorageTest, BusyInterfaceTurnsTheClass) {
  const auto recorder = this->newProgram();
  std::string events;
  const Subscription subscription =
      recorder->eventsPublisher().subscribe([&](const Recorder::Event&) {
        events += std::string(nameOf(recorder->currentBandwidthClass())) + " ";
      });
  this->sample(*recorder, 0, 0);
  this->sample(*recorder, 0, 7'000'000);
  this->sample(*recorder, 0, 70'000'000);
  this->sample(*recorder, 0, 70'000'000);
  EXPECT_EQ(events, "high veryHigh idle ");
}

TYPED_TEST(RecorderOverAnyStorageTest, AdaptiveReaderFollowsTheTraffic) {
  const auto recorder = this->newProgram();
  RecordedConnectionMetricsReader reader(recorder);
  this->machine.setCounters("en0", 0, 0);
  static_cast<void>(reader.read());
  this->machine.setCounters("en0", 32'000'000ULL * 120, 0);
  this->machine.dispatch.advance(120s);
  EXPECT_EQ(recorder->interval(), 15s);
  this->machine.dispatch.advance(15s);
  EXPECT_EQ(recorder->interval(), 120s);
  EXPECT_TRUE(this->machine.log.lines().empty());
}

template <typename Kind>
using RecorderOverPersistentStorageTest = RecorderStorageTest<Kind>;
TYPED_TEST_SUITE(RecorderOverPersistentStorageTest, PersistentKinds, KindNames);

TYPED_TEST(RecorderOverPersistentStorageTest, FirstSampleTakesTheCountersAsTheyAre) {
  EXPECT_EQ(this->sample(*this->newProgram(), 30, 40), "en0 30/40");
}

TYPED_TEST(RecorderOverPersistentStorageTest, CountersSurviveTheProgram) {
  this->sample(*this->newProgram(), 4'294'967'000, 10);
  EXPECT_EQ(textOf(this->newProgram()->allMetrics()), "en0 4294967000/10");
  EXPECT_EQ(this->sample(*this->newProgram(), 100, 10), "en0 4294967395/10");
}

TYPED_TEST(RecorderOverPersistentStorageTest, StorageThatPredatesTheBootIsResetBeforeTheSample) {
  this->sample(*this->newProgram(), 4'294'967'000, 10);
  this->sample(*this->newProgram(), 100, 10);
  this->machine.clock.advance(60s);
  this->machine.kernel.setBootTime(this->machine.clock.now());
  this->machine.clock.advance(60s);
  const auto recorder = this->newProgram();
  EXPECT_EQ(this->sample(*recorder, 50, 5), "en0 50/5");
  EXPECT_EQ(this->sample(*recorder, 60, 5), "en0 60/5") << "reset once, not again";
}

TYPED_TEST(RecorderOverPersistentStorageTest, InterfaceThatIsGoneAtTheRebootIsForgotten) {
  this->machine.setCounters("en1", 1, 1);
  this->sample(*this->newProgram(), 10, 10);
  this->machine.clock.advance(60s);
  this->machine.kernel.setBootTime(this->machine.clock.now());
  this->machine.clock.advance(60s);
  this->machine.reader->setCounters({});
  const auto recorder = this->newProgram();
  this->sample(*recorder, 5, 5);
  EXPECT_EQ(textOf(recorder->allMetrics()), "en0 5/5");
}

TYPED_TEST(RecorderOverPersistentStorageTest, RestartWithoutARebootCarriesOn) {
  this->machine.kernel.setBootTime(this->machine.clock.now() - 1h);
  this->sample(*this->newProgram(), 4'294'967'000, 10);
  EXPECT_EQ(this->sample(*this->newProgram(), 100, 10), "en0 4294967395/10");
}

TYPED_TEST(RecorderOverPersistentStorageTest, FirstStepOverAnExistingStorageKeepsEveryInterface) {
  for (const char* name : {"en1", "en2", "lo"}) this->machine.setCounters(name, 1, 1);
  this->sample(*this->newProgram(), 1, 1);
  for (const char* name : {"en1", "en2", "lo"}) this->machine.setCounters(name, 2, 3);
  this->sample(*this->newProgram(), 2, 3);
  EXPECT_EQ(textOf(this->newProgram()->allMetrics()), "en0 2/3, en1 2/3, en2 2/3, lo 2/3");
}

TYPED_TEST(RecorderOverPersistentStorageTest, TwoProgramsTakeTurns) {
  const auto first = this->newProgram();
  const auto second = this->newProgram();
  this->sample(*first, 1000, 0);
  EXPECT_EQ(this->sample(*second, 4'000'000'000, 0), "en0 4000000000/0");
  EXPECT_EQ(this->sample(*first, 0, 0), "en0 4294967295/0");
  EXPECT_EQ(this->sample(*second, 5, 0), "en0 4294967300/0");
  EXPECT_EQ(textOf(first->allMetrics()), "en0 4294967300/0");
}

class RecorderOverUserDefaultsTest : public RecorderStorageTest<InUserDefaults> {};

TEST_F(RecorderOverUserDefaultsTest, BusyInterfaceBehindAnotherIsJudgedSinceThatOnesRegistration) {
  const auto recorder = newProgram();
  machine.setCounters("en9", 0, 0);
  sample(*recorder, 0, 0);
  machine.setCounters("en9", 0, 70'000'000);
  sample(*recorder, 0, 0);
  EXPECT_EQ(recorder->currentBandwidthClass(), idle);
}

TEST_F(RecorderOverUserDefaultsTest, SuiteThatCannotBeSavedFailsTheSample) {
  const auto recorder = newProgram();
  sample(*recorder, 0, 0);
  const auto suite = std::static_pointer_cast<FakeUserDefaults>(machine.suites.standard());
  suite->setDiskFailing(true);
  EXPECT_TRUE(sample(*recorder, 10, 10).starts_with("failed: "));
  EXPECT_EQ(recorder->metrics("en0")->sentBytes, 10U) << "registered before the failure";
  suite->setDiskFailing(false);
  EXPECT_EQ(sample(*recorder, 20, 20), "en0 20/20");
}

TEST_F(RecorderOverUserDefaultsTest, SuiteThatCannotBeReadFailsTheSampleAndIsLeftAlone) {
  sample(*newProgram(), 10, 10);
  const auto suite = std::static_pointer_cast<FakeUserDefaults>(machine.suites.standard());
  const auto recorder = newProgram();
  suite->setDiskUnreadable(true);
  EXPECT_EQ(sample(*recorder, 20, 20), "failed: the settings cannot be read: the disk fails");
  suite->setDiskUnreadable(false);
  EXPECT_EQ(recorder->metrics("en0")->sentBytes, 10U) << "as the program before left it";
  EXPECT_EQ(sample(*recorder, 30, 30), "en0 30/30");
}

class RecorderOverFileTest : public RecorderStorageTest<InFile> {
 protected:
  const std::filesystem::path dataFile = "/data/connection-metrics-storage_default.json";
  const std::filesystem::path lockFile = "/data/connection-metrics-storage_default.lock";
};

TEST_F(RecorderOverFileTest, BusyInterfaceBehindAnotherIsSeen) {
  const auto recorder = newProgram();
  machine.setCounters("en9", 0, 0);
  sample(*recorder, 0, 0);
  machine.setCounters("en9", 0, 70'000'000);
  sample(*recorder, 0, 0);
  EXPECT_EQ(recorder->currentBandwidthClass(), veryHigh);
}

TEST_F(RecorderOverFileTest, CompletedSampleLeavesTheDataFileAndNoLock) {
  sample(*newProgram(), 0, 0);
  EXPECT_EQ(machine.files.paths("/data"), (std::vector{dataFile}));
}

TEST_F(RecorderOverFileTest, LockThatAnotherProgramHoldsFailsTheSampleAndIsWaitedFor) {
  const auto recorder = newProgram();
  sample(*recorder, 1, 1);
  const auto other = machine.inFile();
  // The lease is as long as a wait, so only a lock that is taken anew outlasts one.
  machine.clock.setSleeper([&](std::chrono::nanoseconds duration) {
    machine.clock.advance(duration);
    ASSERT_TRUE(other->unlock());
    ASSERT_TRUE(other->lock());
  });
  ASSERT_TRUE(other->lock());
  const auto before = machine.clock.steadyNow();
  EXPECT_EQ(textOf(recorder->onceSync()),
            "failed: " + describe(LockError{.value = LockError::Case::lockTimeout,
                                            .underlying = std::nullopt}));
  EXPECT_GT(machine.clock.steadyNow() - before, 500ms);
  EXPECT_LE(machine.clock.steadyNow() - before, 550ms);
  ASSERT_TRUE(other->unlock());
  EXPECT_EQ(sample(*recorder, 3, 3), "en0 3/3");
}

TEST_F(RecorderOverFileTest, FailingStepLeavesTheLockToLapse) {
  const auto recorder = newProgram();
  sample(*recorder, 1, 1);
  machine.reader->setFailing(true);
  sample(*recorder, 2, 2);
  EXPECT_TRUE(machine.files.bytes(lockFile));
  machine.reader->setFailing(false);
  machine.setCounters("en0", 3, 3);
  machine.clock.advance(100ms);
  const auto before = machine.clock.steadyNow();
  EXPECT_EQ(textOf(recorder->onceSync()), "en0 3/3");
  EXPECT_EQ(machine.clock.steadyNow() - before, 400ms) << "the next step waits for the lapse";
  EXPECT_FALSE(machine.files.bytes(lockFile));
}

// No sleep ends to the nanosecond: who begins to wait when the lease begins gives up just before it
// ends, and is not kept waiting a second time.
TEST_F(RecorderOverFileTest, StepRightAfterAFailedOneGivesUpAndTheNextOneSucceeds) {
  const auto recorder = newProgram();
  machine.clock.setSleeper(
      [this](std::chrono::nanoseconds duration) { machine.clock.advance(duration + 60us); });
  machine.reader->setFailing(true);
  sample(*recorder, 2, 2);
  machine.reader->setFailing(false);
  machine.setCounters("en0", 3, 3);
  EXPECT_EQ(textOf(recorder->onceSync()),
            "failed: " + describe(LockError{.value = LockError::Case::lockTimeout,
                                            .underlying = std::nullopt}));
  const auto before = machine.clock.steadyNow();
  EXPECT_EQ(textOf(recorder->onceSync()), "en0 3/3");
  EXPECT_EQ(machine.clock.steadyNow(), before);
}

TEST_F(RecorderOverFileTest, FullDiskFailsTheSampleAndTheFileStays) {
  const auto recorder = newProgram();
  sample(*recorder, 1, 1);
  const auto before = machine.files.bytes(dataFile);
  machine.files.beforeStep([](FileStep step, const std::filesystem::path&) {
    return step == FileStep::writeRest ? FakeFileSystem::Verdict(std::errc::no_space_on_device)
                                       : std::nullopt;
  });
  EXPECT_TRUE(sample(*recorder, 2, 2).starts_with("failed: "));
  EXPECT_EQ(machine.files.bytes(dataFile), before);
  machine.files.beforeStep(nullptr);
  machine.clock.advance(1s);
  EXPECT_EQ(sample(*recorder, 3, 3), "en0 3/3");
}

TEST_F(RecorderOverFileTest, CorruptFileIsReportedAndBegunAnew) {
  machine.files.putFile(dataFile, "{not json");
  EXPECT_EQ(sample(*newProgram(), 5, 6), "en0 5/6");
  ASSERT_EQ(machine.log.lines().size(), 2U);
  EXPECT_TRUE(machine.log.lines()[0].starts_with("Failed to restore from file: "));
  EXPECT_TRUE(machine.log.lines()[1].starts_with("The file that could not be restored was kept"));
  EXPECT_EQ(machine.files.bytes(std::string(dataFile) + ".damaged-1"), "{not json");
  EXPECT_EQ(textOf(newProgram()->allMetrics()), "en0 5/6");
}

TEST_F(RecorderOverFileTest, ScheduleOfTwoProgramsWritesOneFile) {
  const auto first = newProgram();
  const auto second = newProgram();
  machine.setCounters("en0", 100, 100);
  first->start();
  machine.dispatch.advance(60s);
  second->start();
  machine.setCounters("en0", 200, 200);
  machine.dispatch.advance(1h);
  EXPECT_EQ(textOf(first->allMetrics()), "en0 200/200");
  EXPECT_EQ(textOf(second->allMetrics()), "en0 200/200");
  EXPECT_TRUE(machine.log.lines().empty());
}

}  // namespace
}  // namespace lanternfold
