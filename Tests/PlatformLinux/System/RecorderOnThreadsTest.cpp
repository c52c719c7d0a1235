// The recorder on real threads and real time: what several of them do to it at once.
#include <atomic>
#include <latch>
#include <thread>

#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/RecordedConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/SystemClock.h"
#include "Tests/Support/FakeConnectionMetricsReader.h"
#include "Tests/Support/FakeNetworkKernel.h"
#include "Tests/Support/RecordingDiagnosticLog.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Recorder = ConnectionMetricsRecorder;

class RecorderOnThreadsTest : public testing::Test {
 protected:
  RecorderOnThreadsTest() {
    // Busy in every second sample, so that the class changes with every one.
    counters->beforeReading([this] {
      const auto number = ++samples;
      if (number % 2 == 0) sent += 1'000'000'000;
      counters->set("en0", {.sentBytes = sent, .mtu = 1500});
      if (duringSample) duringSample();
    });
  }

  [[nodiscard]] std::shared_ptr<Recorder> newRecorder() {
    return Recorder::make(std::make_shared<InMemoryConnectionMetricsStorage>(clock), counters,
                          DateUtils(clock, kernel),
                          std::make_shared<StandardConnectionBandwidthAnalyzer>(),
                          {.dispatch = *dispatch, .clock = clock, .diagnostics = log});
  }
  [[nodiscard]] bool waitUntil(const std::function<bool()>& done) {
    const auto limit = clock.steadyNow() + 30s;
    while (!done()) {
      if (clock.steadyNow() > limit) return false;
      static_cast<void>(dispatch->runMainUntil(clock.steadyNow() + 1ms));
    }
    return true;
  }
  static void onThreads(int count, const std::function<void()>& work) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < count; ++thread) threads.emplace_back(work);
    for (std::thread& thread : threads) thread.join();
  }

  SystemClock clock;
  RecordingDiagnosticLog log;
  FakeNetworkKernel kernel;
  std::atomic<int> samples = 0;
  std::uint64_t sent = 0;              // of the recorder queue alone
  std::function<void()> duringSample;  // set before the first sample
  const std::shared_ptr<FakeConnectionMetricsReader> counters =
      std::make_shared<FakeConnectionMetricsReader>();
  EventLoop loop;
  std::unique_ptr<AsioDispatch> dispatch = std::make_unique<AsioDispatch>(loop);
};

TEST_F(RecorderOnThreadsTest, SamplesAgainAndAgain) {
  const auto recorder = newRecorder();
  recorder->setInterval(2ms);
  recorder->start();
  EXPECT_TRUE(waitUntil([this] { return samples >= 5; }));
  recorder->stop();
  static_cast<void>(recorder->allMetrics());  // behind a sample that was running
  const int atStop = samples;
  std::this_thread::sleep_for(10ms);
  EXPECT_EQ(samples, atStop);
}

TEST_F(RecorderOnThreadsTest, OfManyThreadsThatReadOneStartsTheRecorder) {
  const auto recorder = newRecorder();
  RecordedConnectionMetricsReader reader(recorder);
  onThreads(8, [&reader] { EXPECT_TRUE(reader.read()); });
  EXPECT_EQ(samples, 8 + 1) << "each its own, and the one schedule's first";
}

TEST_F(RecorderOnThreadsTest, EverythingAtOnce) {
  const auto recorder = newRecorder();
  std::atomic<int> events = 0;
  std::atomic<int> completions = 0;
  const Subscription subscription =
      recorder->eventsPublisher().subscribe([&](const Recorder::Event&) {
        ++events;
        recorder->setInterval(1ms);
      });
  recorder->start();
  onThreads(4, [&] {
    for (int round = 0; round < 50; ++round) {
      recorder->setInterval(std::chrono::microseconds(100 + round));
      EXPECT_TRUE(recorder->onceSync());
      recorder->once([&completions](const Recorder::Metrics& outcome) {
        EXPECT_TRUE(outcome);
        ++completions;
      });
      if (round % 10 == 0) recorder->stop();
      if (round % 10 == 5) recorder->start();
      static_cast<void>(recorder->isStarted());
      static_cast<void>(recorder->metrics("en0"));
      static_cast<void>(recorder->currentBandwidthClass());
      static_cast<void>(recorder->interval());
    }
  });
  EXPECT_TRUE(waitUntil([&completions] { return completions == 4 * 50; }));
  recorder->stop();
  static_cast<void>(recorder->allMetrics());
  EXPECT_GT(events, 0);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(RecorderOnThreadsTest, ReadersComeAndGoWhileTheRecorderSamples) {
  const auto recorder = newRecorder();
  onThreads(4, [&recorder] {
    for (int round = 0; round < 25; ++round) {
      RecordedConnectionMetricsReader reader(recorder);
      EXPECT_TRUE(reader.read());
      reader.read([](const Recorder::Metrics& outcome) { EXPECT_TRUE(outcome); });
    }
  });
  EXPECT_FALSE(recorder->isStarted());
}

TEST_F(RecorderOnThreadsTest, RecorderReleasedAtAnyMomentIsGone) {
  for (int life = 0; life < 100; ++life) {
    auto recorder = newRecorder();
    const std::weak_ptr watched = recorder;
    recorder->setInterval(50us);
    recorder->start();
    std::this_thread::sleep_for(std::chrono::microseconds(life * 7));
    recorder.reset();
    EXPECT_TRUE(waitUntil([&watched] { return watched.expired(); }));
  }
}

TEST_F(RecorderOnThreadsTest, OutstandingCompletionsOfAReleasedRecorderAreAllCalled) {
  std::atomic<int> completions = 0;
  auto recorder = newRecorder();
  for (int count = 0; count < 20; ++count) {
    recorder->once([&completions](const Recorder::Metrics& outcome) {
      EXPECT_TRUE(outcome);
      ++completions;
    });
  }
  recorder.reset();
  EXPECT_TRUE(waitUntil([&completions] { return completions == 20; }));
}

TEST_F(RecorderOnThreadsTest, ShutdownLetsGoWhoWaitsForASample) {
  std::latch sampling(1);
  duringSample = [&sampling] {
    sampling.count_down();
    std::this_thread::sleep_for(50ms);
  };
  const auto recorder = newRecorder();
  recorder->start();
  sampling.wait();
  Recorder::Metrics outcome;
  std::thread waiter([&] { outcome = recorder->onceSync(); });
  std::this_thread::sleep_for(10ms);
  dispatch.reset();
  waiter.join();
  EXPECT_EQ(outcome, Recorder::Metrics(std::unexpect, ConnectionMetricsReaderError::failedGetIf));
  EXPECT_EQ(samples, 1);
}

}  // namespace
}  // namespace lanternfold
