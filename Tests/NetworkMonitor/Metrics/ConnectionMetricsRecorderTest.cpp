// A recorder's schedule, its ways to take a sample, and its events.
#include <cmath>
#include <limits>

#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "Tests/NetworkMonitor/Metrics/RecorderFixture.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using enum ConnectionBandwidthClass;

using ConnectionMetricsRecorderTest = RecorderFixture;

TEST_F(ConnectionMetricsRecorderTest, BeginsStoppedIdleAndWithTwoMinutes) {
  EXPECT_FALSE(recorder->isStarted());
  EXPECT_EQ(recorder->currentBandwidthClass(), idle);
  EXPECT_EQ(recorder->interval(), 120s);
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "");
}

TEST_F(ConnectionMetricsRecorderTest, StartSamplesAtOnceAndThenEveryInterval) {
  recorder->start();
  EXPECT_TRUE(recorder->isStarted());
  EXPECT_EQ(diary, "") << "in the background";
  machine.dispatch.advance(360s);
  EXPECT_EQ(diary, "0 120 240 360 ");
}

TEST_F(ConnectionMetricsRecorderTest, StopEndsTheSchedule) {
  recorder->start();
  machine.dispatch.advance(130s);
  recorder->stop();
  EXPECT_FALSE(recorder->isStarted());
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "0 120 ");
  recorder->stop();
}

TEST_F(ConnectionMetricsRecorderTest, StartAfterAStopSamplesAtOnceAgain) {
  recorder->start();
  machine.dispatch.advance(130s);
  recorder->stop();
  recorder->start();
  machine.dispatch.advance(125s);
  EXPECT_EQ(diary, "0 120 130 250 ");
}

TEST_F(ConnectionMetricsRecorderTest, StopBeforeTheFirstSampleLeavesNone) {
  recorder->start();
  recorder->stop();
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "");
}

TEST_F(ConnectionMetricsRecorderTest, StartOnAStartedRecorderCancelsTheEarlierSchedule) {
  recorder->start();
  machine.dispatch.advance(50s);
  recorder->start();
  machine.dispatch.advance(250s);
  EXPECT_EQ(diary, "0 50 170 290 ");
  recorder->stop();
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "0 50 170 290 ");
}

TEST_F(ConnectionMetricsRecorderTest, IntervalWhileStoppedIsOnlyStoredAndUsedByTheNextStart) {
  recorder->setInterval(30s);
  EXPECT_EQ(recorder->interval(), 30s);
  EXPECT_FALSE(recorder->isStarted());
  machine.dispatch.advance(100s);
  EXPECT_EQ(diary, "");
  recorder->start();
  machine.dispatch.advance(60s);
  EXPECT_EQ(diary, "100 130 160 ");
}

TEST_F(ConnectionMetricsRecorderTest, IntervalWhileStartedRestartsWithoutAnImmediateSample) {
  recorder->start();
  machine.dispatch.advance(50s);
  recorder->setInterval(30s);
  EXPECT_TRUE(recorder->isStarted());
  machine.dispatch.advance(70s);
  EXPECT_EQ(diary, "0 80 110 ");
  recorder->setInterval(30s);
  machine.dispatch.advance(45s);
  EXPECT_EQ(diary, "0 80 110 150 ") << "also when it is the same";
}

TEST_F(ConnectionMetricsRecorderTest, IntervalSetBeforeTheFirstSampleReplacesIt) {
  recorder->start();
  recorder->setInterval(30s);
  machine.dispatch.advance(60s);
  EXPECT_EQ(diary, "30 60 ");
}

TEST_F(ConnectionMetricsRecorderTest, IntervalMayBeAFractionOfASecond) {
  recorder->setInterval(0.25s);
  recorder->start();
  machine.dispatch.advance(1s);
  EXPECT_EQ(diary, "0 0 0 0 1 ");
}

TEST_F(ConnectionMetricsRecorderTest, EndlessIntervalLeavesTheFirstSample) {
  recorder->setInterval(std::chrono::duration<double>(std::numeric_limits<double>::infinity()));
  recorder->start();
  machine.dispatch.advance(365 * 24h);
  EXPECT_EQ(diary, "0 ");
}

TEST_F(ConnectionMetricsRecorderTest, IntervalSetByAnEventHandlerRestartsTheScheduleOnce) {
  const Subscription subscription =
      recorder->eventsPublisher().subscribe([this](const Recorder::Event&) {
        EXPECT_TRUE(machine.recorderQueue().isCurrent());
        recorder->setInterval(10s);
      });
  recorder->setInterval(1s);
  recorder->start();
  machine.dispatch.advance(500ms);
  makeBusy(high);
  machine.dispatch.advance(25s);
  EXPECT_EQ(diary, "0 1 11 21 ");
}

TEST_F(ConnectionMetricsRecorderTest, SlowSamplesDoNotDrift) {
  duringReading = [this] { machine.clock.sleep(7s); };
  recorder->start();
  machine.dispatch.advance(250s);
  EXPECT_EQ(diary, "0 120 240 ");
}

TEST_F(ConnectionMetricsRecorderTest, FailureOfTheScheduleIsPrintedAndTheScheduleGoesOn) {
  recorder->start();
  machine.dispatch.advance(0s);
  storage->saveFailure = MetricsSaveError{"the disk is full"};
  machine.dispatch.advance(120s);
  storage->saveFailure.reset();
  storage->lockFailure = LockError{.value = LockError::Case::lockTimeout, .underlying = {}};
  machine.dispatch.advance(120s);
  storage->lockFailure.reset();
  machine.reader->setFailing(true);
  machine.dispatch.advance(120s);
  machine.reader->setFailing(false);
  machine.dispatch.advance(120s);
  EXPECT_EQ(machine.log.lines(),
            (std::vector<std::string>{
                "Failed to save storage: the disk is full",
                "Failed to save storage: " +
                    describe(LockError{.value = LockError::Case::lockTimeout, .underlying = {}}),
                "Failed to save storage: the counters of the network interfaces could not be "
                "read"}));
  EXPECT_EQ(diary, "0 120 360 480 ");
}

TEST_F(ConnectionMetricsRecorderTest, FailuresOfSingleSamplesAreNotPrinted) {
  machine.reader->setFailing(true);
  static_cast<void>(recorder->onceSync());
  recorder->once([](const Recorder::Metrics&) {});
  machine.dispatch.runReady();
  EXPECT_TRUE(machine.log.lines().empty());
}

TEST_F(ConnectionMetricsRecorderTest, OnceDeliversTheSampleOnTheMainQueue) {
  recorder->once([this](const Recorder::Metrics& outcome) {
    EXPECT_TRUE(machine.dispatch.mainQueue().isCurrent());
    diary += textOf(outcome);
  });
  EXPECT_EQ(diary, "") << "never before the return";
  machine.dispatch.runReady();
  EXPECT_EQ(diary, "0 en0 10/20");
  EXPECT_FALSE(recorder->isStarted());
}

TEST_F(ConnectionMetricsRecorderTest, SamplesInTheBackground) {
  EXPECT_EQ(machine.dispatch.qualityOf(Recorder::queueLabel), QualityOfService::background);
}

TEST_F(ConnectionMetricsRecorderTest, OnceDeliversAFailureToo) {
  machine.reader->setFailing(true);
  recorder->once([this](const Recorder::Metrics& outcome) { diary += textOf(outcome); });
  machine.dispatch.runReady();
  EXPECT_EQ(diary, "0 failed: the counters of the network interfaces could not be read");
}

TEST_F(ConnectionMetricsRecorderTest, OnceCalledManyTimesDeliversEachInTheOrderOfTheCalls) {
  std::string delivered;
  for (const char* name : {"a ", "b ", "c "}) {
    recorder->once([&delivered, name](const Recorder::Metrics&) { delivered += name; });
  }
  machine.dispatch.runReady();
  EXPECT_EQ(machine.reader->readCount(), 3U);
  EXPECT_EQ(delivered, "a b c ");
}

TEST_F(ConnectionMetricsRecorderTest, OnceSyncReturnsTheSampleOfTheRecorderQueue) {
  duringReading = [this] {
    diary += machine.recorderQueue().isCurrent() ? "on the recorder queue" : "elsewhere";
  };
  EXPECT_EQ(textOf(recorder->onceSync()), "en0 10/20");
  EXPECT_EQ(diary, "0 on the recorder queue");
}

TEST_F(ConnectionMetricsRecorderTest, OnceSyncReturnsTheFailure) {
  machine.reader->setFailing(true);
  EXPECT_EQ(recorder->onceSync(),
            Recorder::Metrics(std::unexpect, ConnectionMetricsReaderError::failedGetIf));
}

TEST_F(ConnectionMetricsRecorderTest, StoredCountersAreReadWithoutASample) {
  EXPECT_EQ(recorder->metrics("en0"), std::nullopt);
  EXPECT_TRUE(recorder->allMetrics().empty());
  static_cast<void>(recorder->onceSync());
  machine.setCounters("en0", 50, 60);
  EXPECT_EQ(recorder->metrics("en0")->sentBytes, 10U);
  EXPECT_EQ(recorder->metrics("en1"), std::nullopt);
  EXPECT_EQ(textOf(recorder->allMetrics()), "en0 10/20");
  EXPECT_EQ(machine.reader->readCount(), 1U);
}

TEST_F(ConnectionMetricsRecorderTest, StoredCountersAreTheAdjustedOnes) {
  machine.setCounters("en0", 4'294'967'000, 0);
  static_cast<void>(recorder->onceSync());
  machine.setCounters("en0", 100, 0);
  static_cast<void>(recorder->onceSync());
  EXPECT_EQ(recorder->metrics("en0")->sentBytes, 4'294'967'395U);
  EXPECT_EQ(textOf(recorder->allMetrics()), "en0 4294967395/0");
}

TEST_F(ConnectionMetricsRecorderTest, EachChangeOfTheClassIsOneEvent) {
  const Subscription subscription = follow();
  recorder->setInterval(1s);
  recorder->start();
  for (const ConnectionBandwidthClass next : {idle, high, high, veryHigh, low, idle, idle}) {
    machine.dispatch.advance(999ms);
    makeBusy(next);
    machine.dispatch.advance(1ms);
  }
  EXPECT_EQ(diary,
            "0 1 2 bandwidth_class_change=high 3 4 bandwidth_class_change=veryHigh "
            "5 bandwidth_class_change=low 6 bandwidth_class_change=idle 7 ");
}

TEST_F(ConnectionMetricsRecorderTest, EventsAreSentOnTheRecorderQueueAfterTheSave) {
  bool onQueue = false;
  const Subscription subscription =
      recorder->eventsPublisher().subscribe([&](const Recorder::Event&) {
        onQueue = machine.recorderQueue().isCurrent();
        storage->write("event");
      });
  static_cast<void>(recorder->onceSync());
  machine.clock.advance(1s);
  makeBusy(high);
  storage->diary.clear();
  static_cast<void>(recorder->onceSync());
  EXPECT_TRUE(onQueue);
  EXPECT_EQ(storage->diary, "lock en0.original en0.adjusted save unlock event");
}

TEST_F(ConnectionMetricsRecorderTest, SubscriberGetsLaterEventsOnly) {
  static_cast<void>(recorder->onceSync());
  machine.clock.advance(1s);
  makeBusy(high);
  static_cast<void>(recorder->onceSync());
  const Subscription subscription = follow();
  machine.clock.advance(1s);
  static_cast<void>(recorder->onceSync());
  EXPECT_EQ(diary, "0 1 2 bandwidth_class_change=idle ");
}

TEST(ConnectionMetricsRecorderEventTest, EventsAreEqualWhenTheirTextsAre) {
  using Event = Recorder::Event;
  EXPECT_EQ(Event::bandwidthClassChange().rawValue, "bandwidth_class_change");
  EXPECT_EQ(Event{"bandwidth_class_change"}, Event::bandwidthClassChange());
  EXPECT_NE(Event{"Bandwidth_class_change"}, Event::bandwidthClassChange());
  Event event{"any text"};
  event.rawValue = "another";
  EXPECT_EQ(event, Event{"another"});
}

TEST_F(ConnectionMetricsRecorderTest, RecordersShareOneQueue) {
  const auto other =
      machine.recorderOver(std::make_shared<InMemoryConnectionMetricsStorage>(machine.clock));
  int onQueue = 0;
  duringReading = [&] { onQueue += machine.recorderQueue().isCurrent() ? 1 : 0; };
  other->start();
  recorder->start();
  machine.dispatch.advance(0s);
  EXPECT_EQ(onQueue, 2);
  EXPECT_EQ(machine.recorderQueue().label(),
            "net.quernaple.NetworkMonitor.ConnectionMetricsRecorder");
}

using ConnectionMetricsRecorderDeathTest = ConnectionMetricsRecorderTest;

TEST_F(ConnectionMetricsRecorderDeathTest, BlockingCallsOnTheRecorderQueue) {
  const auto onQueue = [this](const std::function<void()>& call) {
    machine.recorderQueue().async(call);
    machine.dispatch.runReady();
  };
  const char* const message = "waited for the queue \"net.quernaple.*ConnectionMetricsRecorder\"";
  EXPECT_DEATH(onQueue([this] { static_cast<void>(recorder->onceSync()); }), message);
  EXPECT_DEATH(onQueue([this] { static_cast<void>(recorder->metrics("en0")); }), message);
  EXPECT_DEATH(onQueue([this] { static_cast<void>(recorder->allMetrics()); }), message);
}

TEST_F(ConnectionMetricsRecorderDeathTest, IntervalThatIsNotAboveZero) {
  for (const double seconds : {0.0, -1.0, std::nan("")}) {
    EXPECT_DEATH(recorder->setInterval(std::chrono::duration<double>(seconds)),
                 "a sampling interval was set that is not above zero");
  }
}

TEST_F(ConnectionMetricsRecorderDeathTest, CountersThatOverflow) {
  machine.setCounters("en0", 5, 0);
  storage->registerMetrics({.sentBytes = std::numeric_limits<std::uint64_t>::max()}, "en0",
                           ConnectionMetricsType::adjusted);
  EXPECT_DEATH(static_cast<void>(recorder->onceSync()), "exceeds the range");
}

}  // namespace
}  // namespace lanternfold
