// The finder of the Wi-Fi interface's name over real threads, queues and time.
#include <atomic>
#include <chrono>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "NetworkMonitor/Wlan/NetworkPathWlanInterfaceNameFinder.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/SystemClock.h"
#include "Tests/Support/FakeUserDefaults.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

/// Reports one path some time after its start, unless it has been cancelled before.
class DelayedPathMonitor final : public PathMonitor {
 public:
  DelayedPathMonitor(NetworkPath path, std::chrono::nanoseconds delay)
      : path_(std::move(path)), delay_(delay) {}
  ~DelayedPathMonitor() override { cancel(); }

  void setPathUpdateHandler(UpdateHandler handler) override {
    recipient_->handler = std::move(handler);
  }
  void start(DispatchQueue& queue) override {
    queue.after(delay_, [recipient = recipient_, path = path_] {
      if (!recipient->isCancelled) recipient->handler(path);
    });
  }
  void cancel() override { recipient_->isCancelled = true; }

 private:
  struct Recipient {
    UpdateHandler handler;
    std::atomic<bool> isCancelled = false;
  };

  const NetworkPath path_;
  const std::chrono::nanoseconds delay_;
  const std::shared_ptr<Recipient> recipient_ = std::make_shared<Recipient>();
};

class DelayedPathMonitors final : public PathMonitorFactory {
 public:
  explicit DelayedPathMonitors(std::chrono::nanoseconds delay) : delay_(delay) {}

  [[nodiscard]] std::unique_ptr<PathMonitor> makePathMonitor(
      std::optional<PathInterfaceType> type) override {
    EXPECT_EQ(type, PathInterfaceType::wifi);
    return std::make_unique<DelayedPathMonitor>(
        NetworkPath{.status = PathStatus::satisfied,
                    .availableInterfaces = {{"wlan0", 3, PathInterfaceType::wifi}}},
        delay_);
  }

 private:
  const std::chrono::nanoseconds delay_;
};

/// Goes a hundred times slower than the real one, so that a busy machine misses no update that is
/// due within a wait.
class SlowClock final : public Clock {
 public:
  [[nodiscard]] std::chrono::system_clock::time_point now() const override { return clock_.now(); }
  [[nodiscard]] std::chrono::steady_clock::time_point steadyNow() const override {
    return std::chrono::steady_clock::time_point(clock_.steadyNow().time_since_epoch() / 100);
  }
  void sleep(std::chrono::nanoseconds duration) const override { clock_.sleep(duration); }

 private:
  SystemClock clock_;
};

class WlanNameFinderOnThreadsTest : public testing::Test {
 protected:
  std::optional<std::string> find(std::chrono::nanoseconds delay, const Clock& clock) {
    DelayedPathMonitors paths(delay);
    return NetworkPathWlanInterfaceNameFinder(
               userDefaults_, {.pathMonitors = paths, .dispatch = dispatch_, .clock = clock})
        .wlanInterfaceName();
  }
  [[nodiscard]] bool isRemembered() const {
    return userDefaults_->object(NetworkPathWlanInterfaceNameFinder::cacheKey)->has_value();
  }

  const SystemClock clock_;
  const SlowClock slowClock_;
  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  const std::shared_ptr<FakeUserDefaults> userDefaults_ = std::make_shared<FakeUserDefaults>();
};

TEST_F(WlanNameFinderOnThreadsTest, HearsOfThePathWhileItsCallerWaits) {
  EXPECT_EQ(find(5ms, slowClock_), "wlan0");
  EXPECT_TRUE(isRemembered());
}

TEST_F(WlanNameFinderOnThreadsTest, WaitsNoLessThan100msForAPathThatDoesNotCome) {
  const auto begin = clock_.steadyNow();
  EXPECT_EQ(find(1h, clock_), std::nullopt);
  EXPECT_GE(clock_.steadyNow() - begin, 100ms);
  EXPECT_FALSE(isRemembered());
}

TEST_F(WlanNameFinderOnThreadsTest, AnUpdateAtTheEndOfTheWaitIsTakenOrMissedAsAWhole) {
  const auto name = find(100ms, clock_);
  EXPECT_TRUE(name == std::nullopt || name == "wlan0");
  EXPECT_EQ(isRemembered(), name.has_value());
}

TEST_F(WlanNameFinderOnThreadsTest, SeveralCallersHaveAWaitEach) {
  DelayedPathMonitors paths(5ms);
  NetworkPathWlanInterfaceNameFinder finder(
      nullptr, {.pathMonitors = paths, .dispatch = dispatch_, .clock = slowClock_});
  std::atomic<int> found = 0;
  {
    std::vector<std::jthread> callers;
    for (int caller = 0; caller < 4; ++caller) {
      callers.emplace_back([&] { found += finder.wlanInterfaceName() == "wlan0"; });
    }
  }
  EXPECT_EQ(found, 4);
}

}  // namespace
}  // namespace lanternfold
