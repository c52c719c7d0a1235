// The timer of one moment, over both sides of the dispatch seam.
#include <atomic>
#include <memory>
#include <optional>

#include "Platform/Timer.h"
#include "Tests/PlatformLinux/Contracts/DispatchContractFixture.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

template <typename World>
class TimerContractTest : public testing::Test {
 protected:
  [[nodiscard]] DispatchQueue& queue() {
    return world.dispatch().serialQueue("test.moments", QualityOfService::userInitiated);
  }
  [[nodiscard]] Timer start(std::chrono::nanoseconds delay) {
    return {queue(), delay, [this] { ++fired; }};
  }
  /// Lets more time pass than any of the timers here wants.
  void runOn() {
    std::atomic<bool> isOver = false;
    queue().after(20ms, [&isOver] { isOver = true; });
    ASSERT_TRUE(world.runUntil([&isOver] { return isOver.load(); }));
  }

  std::atomic<int> fired = 0;
  World world;
};

TYPED_TEST_SUITE(TimerContractTest, DispatchSides, DispatchSideNames);

TYPED_TEST(TimerContractTest, FiresOnceOnItsQueueAndNotBefore) {
  const auto begin = this->world.clock().steadyNow();
  std::atomic<bool> isOnQueue = false;
  std::atomic<std::chrono::nanoseconds> after{};
  const Timer timer(this->queue(), 5ms, [&] {
    isOnQueue = this->queue().isCurrent();
    after = this->world.clock().steadyNow() - begin;
    ++this->fired;
  });
  ASSERT_TRUE(this->world.runUntil([this] { return this->fired > 0; }));
  this->runOn();
  EXPECT_EQ(this->fired, 1);
  EXPECT_TRUE(isOnQueue);
  EXPECT_GE(after.load(), 5ms);
}

TYPED_TEST(TimerContractTest, DoesNotFireInsideTheCallThatMakesIt) {
  int firedInside = -1;
  std::optional<Timer> timer;
  this->queue().sync([&] {
    timer.emplace(this->queue(), 0ns, [this] { ++this->fired; });
    firedInside = this->fired;
  });
  ASSERT_TRUE(this->world.runUntil([this] { return this->fired > 0; }));
  EXPECT_EQ(firedInside, 0);
}

TYPED_TEST(TimerContractTest, DoesNotFireOnceItIsInvalidated) {
  Timer timer = this->start(5ms);
  timer.invalidate();
  timer.invalidate();
  this->runOn();
  EXPECT_EQ(this->fired, 0);
}

TYPED_TEST(TimerContractTest, DoesNotFireOnceItIsDestroyed) {
  {
    const Timer timer = this->start(5ms);
  }
  this->runOn();
  EXPECT_EQ(this->fired, 0);
}

TYPED_TEST(TimerContractTest, FiresWhenItWasMovedElsewhere) {
  Timer first = this->start(5ms);
  const Timer second = std::move(first);
  this->runOn();
  EXPECT_EQ(this->fired, 1);
}

// The moment itself is over: what it does must not wait for itself.
TYPED_TEST(TimerContractTest, MayBeInvalidatedByWhatItFires) {
  std::optional<Timer> timer;
  this->queue().sync([&] {
    timer.emplace(this->queue(), 1ms, [&] {
      timer.reset();
      ++this->fired;
    });
  });
  ASSERT_TRUE(this->world.runUntil([this] { return this->fired > 0; }));
  this->runOn();
  EXPECT_EQ(this->fired, 1);
}

TYPED_TEST(TimerContractTest, LetsGoOfWhatItHoldsAtOnce) {
  const auto held = std::make_shared<int>();
  Timer invalidated(this->queue(), 1h, [held] {});
  EXPECT_EQ(held.use_count(), 2);
  invalidated.invalidate();
  EXPECT_EQ(held.use_count(), 1);
  const Timer due(this->queue(), 1ms, [held, this] { ++this->fired; });
  this->runOn();
  this->queue().sync([] {});
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace lanternfold
