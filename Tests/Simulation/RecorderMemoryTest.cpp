// A recorder holds after a year what it held after a month.
#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/RecordedConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"
#include "Tests/LiveAllocations/LiveAllocations.h"
#include "Tests/Support/FakeConnectionMetricsReader.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/FakeNetworkKernel.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold::simulation {
namespace {

using std::chrono::hours;
using std::chrono::minutes;

/// A recorder over a file, whose traffic is busy for two minutes every day.
class YearOfRecording {
 public:
  YearOfRecording() {
    disk_.makeFolder("/m");
    static_cast<void>(reading_.read());
  }

  void passMonth() {
    for (int day = 0; day < 30; ++day) passDay();
  }
  [[nodiscard]] std::size_t waitingWorks() const { return dispatch_.waitingWorks(); }
  [[nodiscard]] const RecordingDiagnosticLog& log() const { return log_; }
  [[nodiscard]] std::size_t samples() const { return counters_->readCount(); }
  [[nodiscard]] std::size_t classChanges() const { return classChanges_; }

 private:
  void passDay() {
    // As large as they ever get, so that the file's text does not grow with the figures.
    base_ = base_ == high ? high + 5'000'000'000 : high;
    counters_->set("en0", {.sentBytes = base_, .mtu = 1500});
    dispatch_.advance(minutes(121));
    recorder_->setInterval(hours(1));
    dispatch_.advance(hours(22) - minutes(1));
  }

  static constexpr std::uint64_t high = 10'000'000'000'000'000'000ULL;

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeFileSystem disk_{clock_};
  RecordingDiagnosticLog log_;
  FakeNetworkKernel kernel_;
  std::uint64_t base_ = 0;
  std::size_t classChanges_ = 0;
  std::shared_ptr<FakeConnectionMetricsReader> counters_ =
      std::make_shared<FakeConnectionMetricsReader>();
  std::shared_ptr<ConnectionMetricsRecorder> recorder_ = ConnectionMetricsRecorder::make(
      std::make_shared<FileConnectionMetricsStorage>(
          FileConnectionMetricsStorage::Environment{
              .files = disk_, .clock = clock_, .dispatch = dispatch_, .log = log_},
          "/m", "default"),
      counters_, DateUtils(clock_, kernel_),
      std::make_shared<StandardConnectionBandwidthAnalyzer>(),
      {.dispatch = dispatch_, .clock = clock_, .diagnostics = log_});
  Subscription events_ = recorder_->eventsPublisher().subscribe(
      [this](const ConnectionMetricsRecorder::Event&) { ++classChanges_; });
  RecordedConnectionMetricsReader reading_{recorder_};
};

TEST(RecorderMemoryTest, HoldsNoMoreAfterTwelveMonthsThanAfterOne) {
  YearOfRecording year;
  year.passMonth();
  const LiveAllocations atFirst = liveAllocations();
  const std::size_t waitingAtFirst = year.waitingWorks();
  for (int month = 1; month < 12; ++month) year.passMonth();
  const LiveAllocations atLast = liveAllocations();
  EXPECT_EQ(atLast.blocks, atFirst.blocks);
  EXPECT_EQ(atLast.bytes, atFirst.bytes);
  EXPECT_EQ(year.waitingWorks(), waitingAtFirst);
  EXPECT_GT(year.samples(), 12U * 30 * 40);
  EXPECT_GE(year.classChanges(), 12U * 30);
  EXPECT_TRUE(year.log().lines().empty()) << year.log().lines().front();
}

TEST(LiveAllocationsTest, SeesWhatIsHeldAndGivenBack) {
  const LiveAllocations before = liveAllocations();
  auto held = std::make_unique<std::array<char, 1000>>();
  EXPECT_EQ(liveAllocations().blocks, before.blocks + 1);
  EXPECT_GE(liveAllocations().bytes, before.bytes + 1000);
  held.reset();
  EXPECT_EQ(liveAllocations().blocks, before.blocks);
  EXPECT_EQ(liveAllocations().bytes, before.bytes);
}

}  // namespace
}  // namespace lanternfold::simulation
