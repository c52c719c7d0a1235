#include <cmath>
#include <optional>

#include "NetworkMonitor/Metrics/RecordedConnectionMetricsReader.h"
#include "Tests/NetworkMonitor/Metrics/RecorderMachine.h"
#include "Tests/NetworkMonitor/Metrics/ScriptedMetricsStorage.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using enum ConnectionBandwidthClass;

class RecordedConnectionMetricsReaderTest : public testing::Test {
 protected:
  RecordedConnectionMetricsReaderTest() {
    machine.setCounters("en0", 10, 20);
    machine.reader->beforeReading([this] { diary += machine.seconds() + " "; });
  }

  [[nodiscard]] ConnectionMetricsRecorder::Completion noteOutcome() {
    return [this](const Recorder::Metrics& outcome) {
      diary += machine.dispatch.mainQueue().isCurrent() ? "main: " : "caller: ";
      diary += textOf(outcome) + " ";
    };
  }
  /// Traffic at this rate since the last sample, until the next one.
  void send(std::uint64_t bytesPerSecond, std::chrono::seconds duration) {
    sent += bytesPerSecond * static_cast<std::uint64_t>(duration.count());
    machine.setCounters("en0", sent, 20);
  }

  RecorderMachine machine;
  std::string diary;  ///< the second of each sample, and the outcomes
  std::uint64_t sent = 10;
  const std::shared_ptr<ScriptedMetricsStorage> storage =
      std::make_shared<ScriptedMetricsStorage>(machine.clock);
  const std::shared_ptr<Recorder> recorder = machine.recorderOver(storage);
  std::optional<RecordedConnectionMetricsReader> reader{recorder};
};

TEST_F(RecordedConnectionMetricsReaderTest, IsNever32bitCapped) {
  EXPECT_FALSE(reader->is32bitCapped());
  machine.reader->set32bitCapped(false);
  EXPECT_FALSE(reader->is32bitCapped());
}

TEST_F(RecordedConnectionMetricsReaderTest, MakingOneStartsNothing) {
  EXPECT_TRUE(reader->recorderAutostartEnabled());
  machine.dispatch.advance(1h);
  EXPECT_FALSE(recorder->isStarted());
  EXPECT_EQ(diary, "");
}

TEST_F(RecordedConnectionMetricsReaderTest, ReadStartsTheRecorderAndThenSamples) {
  EXPECT_EQ(textOf(reader->read()), "en0 10/20");
  EXPECT_TRUE(recorder->isStarted());
  EXPECT_EQ(diary, "0 0 ") << "the schedule's first sample and the one of this call";
  machine.dispatch.advance(120s);
  EXPECT_EQ(diary, "0 0 120 ");
}

TEST_F(RecordedConnectionMetricsReaderTest, ReadOfAStartedRecorderSamplesOnce) {
  static_cast<void>(reader->read());
  machine.dispatch.advance(50s);
  static_cast<void>(reader->read());
  EXPECT_EQ(diary, "0 0 50 ");
  machine.dispatch.advance(70s);
  EXPECT_EQ(diary, "0 0 50 120 ") << "the schedule is not moved";
}

TEST_F(RecordedConnectionMetricsReaderTest, ReadReturnsEverythingStored) {
  machine.setCounters("en1", 1, 2);
  static_cast<void>(reader->read());
  machine.reader->setCounters({});
  machine.setCounters("en0", 11, 20);
  EXPECT_EQ(textOf(reader->read()), "en0 11/20, en1 1/2");
}

TEST_F(RecordedConnectionMetricsReaderTest, ReadPassesTheErrorOfTheSample) {
  storage->saveFailure = MetricsSaveError{"the disk is full"};
  EXPECT_EQ(textOf(reader->read()), "failed: the disk is full");
  EXPECT_TRUE(recorder->isStarted());
  storage->saveFailure.reset();
  storage->lockFailure = LockError{.value = LockError::Case::lockTimeout, .underlying = {}};
  EXPECT_EQ(reader->read().error(), ConnectionMetricsError(*storage->lockFailure));
}

TEST_F(RecordedConnectionMetricsReaderTest, ReadWithoutAutostartOnlySamples) {
  reader->setRecorderAutostartEnabled(false);
  EXPECT_FALSE(reader->recorderAutostartEnabled());
  EXPECT_EQ(textOf(reader->read()), "en0 10/20");
  EXPECT_FALSE(recorder->isStarted());
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "0 ");
}

TEST_F(RecordedConnectionMetricsReaderTest, CompletionOfTheReadThatStartsIsCalledAtOnce) {
  storage->registerMetrics({.sentBytes = 7}, "en9", ConnectionMetricsType::adjusted);
  reader->read(noteOutcome());
  EXPECT_EQ(diary, "0 caller: en0 10/20, en9 7/0 ") << "behind the schedule's first sample";
  EXPECT_TRUE(recorder->isStarted());
  machine.dispatch.advance(119s);
  EXPECT_EQ(diary, "0 caller: en0 10/20, en9 7/0 ") << "and nothing more";
}

TEST_F(RecordedConnectionMetricsReaderTest, LaterCompletionsGetASampleOnTheMainQueue) {
  static_cast<void>(reader->read());
  machine.dispatch.advance(50s);
  machine.setCounters("en0", 15, 20);
  diary.clear();
  reader->read(noteOutcome());
  EXPECT_EQ(diary, "");
  machine.dispatch.runReady();
  EXPECT_EQ(diary, "50 main: en0 15/20 ");
}

TEST_F(RecordedConnectionMetricsReaderTest, LaterCompletionsGetFailuresToo) {
  static_cast<void>(reader->read());
  machine.reader->setFailing(true);
  diary.clear();
  reader->read(noteOutcome());
  machine.dispatch.runReady();
  EXPECT_EQ(diary, "0 main: failed: the counters of the network interfaces could not be read ");
}

TEST_F(RecordedConnectionMetricsReaderTest, CompletionWithoutAutostartGetsASampleOnTheMainQueue) {
  reader->setRecorderAutostartEnabled(false);
  reader->read(noteOutcome());
  EXPECT_EQ(diary, "");
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "0 main: en0 10/20 ");
  EXPECT_FALSE(recorder->isStarted());
}

TEST_F(RecordedConnectionMetricsReaderTest, IntervalOfEachClass) {
  EXPECT_EQ(RecordedConnectionMetricsReader::intervalOf(idle), 120s);
  EXPECT_EQ(RecordedConnectionMetricsReader::intervalOf(low), 60s);
  EXPECT_EQ(RecordedConnectionMetricsReader::intervalOf(high), 30s);
  EXPECT_EQ(RecordedConnectionMetricsReader::intervalOf(veryHigh), 15s);
}

TEST_F(RecordedConnectionMetricsReaderTest, OtherEventsAreIgnored) {
  EXPECT_EQ(RecordedConnectionMetricsReader::intervalAfter({"bandwidth_class_change"}, high), 30s);
  EXPECT_EQ(RecordedConnectionMetricsReader::intervalAfter({"interface_added"}, high),
            std::nullopt);
  EXPECT_EQ(RecordedConnectionMetricsReader::intervalAfter({""}, high), std::nullopt);
}

TEST_F(RecordedConnectionMetricsReaderTest, IdleToHighSetsHalfAMinuteWithoutAnExtraSample) {
  static_cast<void>(reader->read());
  send(7'000'000, 120s);
  machine.dispatch.advance(149s);
  EXPECT_EQ(recorder->interval(), 30s);
  EXPECT_EQ(diary, "0 0 120 ");
  machine.dispatch.advance(1s);
  EXPECT_EQ(diary, "0 0 120 150 ");
}

TEST_F(RecordedConnectionMetricsReaderTest, BusierTrafficIsSampledMoreOften) {
  static_cast<void>(reader->read());
  diary.clear();
  // Each rate holds from one sample to the next.
  const std::vector<std::pair<std::uint64_t, std::chrono::seconds>> traffic{
      {0, 120s},      {600'000, 120s}, {7'000'000, 60s}, {32'000'000, 30s}, {32'000'000, 15s},
      {600'000, 15s}, {600'000, 60s},  {0, 60s},         {0, 120s}};
  std::string intervals;
  for (const auto& [rate, untilNext] : traffic) {
    send(rate, untilNext);
    machine.dispatch.advance(untilNext);
    intervals += std::to_string(std::lround(recorder->interval().count())) + " ";
  }
  EXPECT_EQ(diary, "120 240 300 330 345 360 420 480 600 ");
  EXPECT_EQ(intervals, "120 60 30 15 15 60 60 120 120 ");
}

TEST_F(RecordedConnectionMetricsReaderTest, EndOfTheReaderStopsTheRecorder) {
  static_cast<void>(reader->read());
  machine.dispatch.advance(130s);
  reader.reset();
  EXPECT_FALSE(recorder->isStarted());
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "0 0 120 ");
}

TEST_F(RecordedConnectionMetricsReaderTest, EndOfTheReaderStopsARecorderThatSomeoneElseStarted) {
  recorder->start();
  reader.reset();
  EXPECT_FALSE(recorder->isStarted());
}

TEST_F(RecordedConnectionMetricsReaderTest, EndOfTheReaderWithoutAutostartLeavesTheRecorder) {
  static_cast<void>(reader->read());
  reader->setRecorderAutostartEnabled(false);
  reader.reset();
  EXPECT_TRUE(recorder->isStarted());
  machine.dispatch.advance(120s);
  EXPECT_EQ(diary, "0 0 120 ");
}

TEST_F(RecordedConnectionMetricsReaderTest, EndOfTheReaderEndsTheAdaptiveInterval) {
  static_cast<void>(reader->read());
  reader->setRecorderAutostartEnabled(false);
  reader.reset();
  send(32'000'000, 120s);
  machine.dispatch.advance(120s);
  EXPECT_EQ(recorder->currentBandwidthClass(), veryHigh);
  EXPECT_EQ(recorder->interval(), 120s);
}

TEST_F(RecordedConnectionMetricsReaderTest, RecorderStartedElsewhereKeepsItsInterval) {
  recorder->start();
  machine.dispatch.advance(60s);
  static_cast<void>(reader->read());
  send(32'000'000, 120s);
  machine.dispatch.advance(60s);
  EXPECT_EQ(recorder->currentBandwidthClass(), veryHigh);
  EXPECT_EQ(recorder->interval(), 120s);
}

TEST_F(RecordedConnectionMetricsReaderTest, RecorderThatWasStoppedIsStartedByTheNextRead) {
  static_cast<void>(reader->read());
  recorder->stop();
  machine.dispatch.advance(50s);
  static_cast<void>(reader->read());
  send(7'000'000, 120s);
  machine.dispatch.advance(150s);
  EXPECT_EQ(diary, "0 0 50 50 170 200 ") << "one event, one restart";
}

TEST_F(RecordedConnectionMetricsReaderTest, ReaderAndRecorderReleaseEachOther) {
  auto owned = machine.recorderOver(storage);
  const std::weak_ptr watched = owned;
  {
    RecordedConnectionMetricsReader shortLived(owned);
    static_cast<void>(shortLived.read());
    owned.reset();
    EXPECT_FALSE(watched.expired());
  }
  EXPECT_TRUE(watched.expired());
}

using RecordedConnectionMetricsReaderDeathTest = RecordedConnectionMetricsReaderTest;

TEST_F(RecordedConnectionMetricsReaderDeathTest, ReadOnTheRecorderQueue) {
  const auto readThere = [this] {
    machine.recorderQueue().async([this] { static_cast<void>(reader->read()); });
    machine.dispatch.runReady();
  };
  EXPECT_DEATH(readThere(), "waited for the queue \"net.quernaple.*ConnectionMetricsRecorder\"");
}

}  // namespace
}  // namespace lanternfold
