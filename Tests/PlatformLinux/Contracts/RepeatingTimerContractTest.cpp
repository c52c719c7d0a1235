// The repeating timer over both sides of the dispatch seam, and its exact times over the simulated
// one.
#include <atomic>
#include <optional>
#include <thread>

#include "Platform/RepeatingTimer.h"
#include "Tests/PlatformLinux/Contracts/DispatchContractFixture.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

template <typename World>
class RepeatingTimerContractTest : public testing::Test {
 protected:
  [[nodiscard]] DispatchQueue& queue() {
    return world.dispatch().serialQueue("test.ticks", QualityOfService::background);
  }
  [[nodiscard]] RepeatingTimer start(std::chrono::nanoseconds period, RepeatingTimer::Tick tick) {
    return {queue(), world.clock(), period, std::move(tick)};
  }
  [[nodiscard]] auto hasTicked(int count) {
    return [this, count] { return ticks >= count; };
  }

  std::atomic<int> ticks = 0;
  World world;
};

TYPED_TEST_SUITE(RepeatingTimerContractTest, DispatchSides, DispatchSideNames);

TYPED_TEST(RepeatingTimerContractTest, TicksAgainAndAgainOnTheQueue) {
  std::atomic<int> elsewhere = 0;
  const RepeatingTimer timer = this->start(1ms, [&] {
    if (!this->queue().isCurrent()) ++elsewhere;
    ++this->ticks;
  });
  EXPECT_TRUE(this->world.runUntil(this->hasTicked(5)));
  EXPECT_EQ(elsewhere, 0);
}

TYPED_TEST(RepeatingTimerContractTest, FirstTickIsAtOnce) {
  const auto before = this->world.clock().steadyNow();
  const RepeatingTimer timer = this->start(1h, [this] { ++this->ticks; });
  ASSERT_TRUE(this->world.runUntil(this->hasTicked(1)));
  EXPECT_LT(this->world.clock().steadyNow() - before, 1min);
}

TYPED_TEST(RepeatingTimerContractTest, FirstTickIsNeverInsideTheCallThatStarts) {
  std::optional<RepeatingTimer> timer;
  std::string order;
  this->queue().sync([&] {
    timer = this->start(1h, [&order] { order += "tick "; });
    order += "started ";
  });
  this->queue().sync([] {});
  EXPECT_EQ(order, "started tick ");
}

TYPED_TEST(RepeatingTimerContractTest, CancelFromWithinATickEndsTheTicks) {
  std::optional<RepeatingTimer> timer;
  this->queue().sync([&] {
    timer = this->start(1ms, [&] {
      if (++this->ticks == 3) timer->cancel();
    });
  });
  ASSERT_TRUE(this->world.runUntil(this->hasTicked(3)));
  this->world.clock().sleep(10ms);
  this->queue().sync([] {});
  EXPECT_EQ(this->ticks, 3);
}

TYPED_TEST(RepeatingTimerContractTest, HandleDestroyedByItsOwnTickLeavesTheTickWhole) {
  const auto held = std::make_shared<int>(0);
  std::optional<RepeatingTimer> timer;
  int seen = 0;
  this->queue().sync([&] {
    timer = this->start(1ms, [&, held] {
      timer.reset();
      seen = static_cast<int>(held.use_count());  // still this tick's own
      ++this->ticks;
    });
  });
  ASSERT_TRUE(this->world.runUntil(this->hasTicked(1)));
  this->queue().sync([] {});
  EXPECT_EQ(seen, 2);
  EXPECT_EQ(held.use_count(), 1) << "released after the tick";
  this->world.clock().sleep(5ms);
  this->queue().sync([] {});
  EXPECT_EQ(this->ticks, 1);
}

TYPED_TEST(RepeatingTimerContractTest, NoTickAfterACancelByAnotherWorkOfTheQueue) {
  RepeatingTimer timer = this->start(1ms, [this] { ++this->ticks; });
  ASSERT_TRUE(this->world.runUntil(this->hasTicked(2)));
  int atCancel = 0;
  this->queue().sync([&] {
    this->world.clock().sleep(3ms);  // a tick is due, and may even wait on the queue by now
    timer.cancel();
    atCancel = this->ticks;
  });
  this->world.clock().sleep(10ms);
  this->queue().sync([] {});
  EXPECT_EQ(this->ticks, atCancel);
}

TYPED_TEST(RepeatingTimerContractTest, CancelBeforeTheFirstTickLeavesNone) {
  this->queue().sync([this] {
    RepeatingTimer timer = this->start(1ms, [this] { ++this->ticks; });
    timer.cancel();
    timer.cancel();
  });
  this->world.clock().sleep(5ms);
  this->queue().sync([] {});
  EXPECT_EQ(this->ticks, 0);
}

TYPED_TEST(RepeatingTimerContractTest, DestructionCancelsAndReleasesWhatTheTickHolds) {
  const auto held = std::make_shared<int>(0);
  {
    const RepeatingTimer timer = this->start(1ms, [this, held] { ++this->ticks; });
    ASSERT_TRUE(this->world.runUntil(this->hasTicked(1)));
  }
  this->queue().sync([] {});
  EXPECT_EQ(held.use_count(), 1);
  const int atDestruction = this->ticks;
  this->world.clock().sleep(5ms);
  this->queue().sync([] {});
  EXPECT_EQ(this->ticks, atDestruction);
}

TYPED_TEST(RepeatingTimerContractTest, AnotherPeriodIsAnotherTimer) {
  RepeatingTimer timer = this->start(1h, [this] { this->ticks += 1000; });
  ASSERT_TRUE(this->world.runUntil(this->hasTicked(1000)));
  timer = this->start(1ms, [this] { ++this->ticks; });
  EXPECT_TRUE(this->world.runUntil(this->hasTicked(1005)));
}

TYPED_TEST(RepeatingTimerContractTest, TimerMayOutliveTheQueues) {
  const auto held = std::make_shared<int>(0);
  RepeatingTimer timer = this->start(1h, [this, held] { ++this->ticks; });
  ASSERT_TRUE(this->world.runUntil(this->hasTicked(1)));
  this->world.destroyDispatch();
  timer.cancel();
  EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST(RepeatingTimerContractTest, LongestPeriodDoesNotOverflow) {
  const RepeatingTimer timer =
      this->start(std::chrono::nanoseconds::max(), [this] { ++this->ticks; });
  EXPECT_TRUE(this->world.runUntil(this->hasTicked(1)));
}

template <typename World>
using RepeatingTimerContractDeathTest = RepeatingTimerContractTest<World>;
TYPED_TEST_SUITE(RepeatingTimerContractDeathTest, DispatchSides, DispatchSideNames);

TYPED_TEST(RepeatingTimerContractDeathTest, PeriodThatIsNotAboveZero) {
  EXPECT_DEATH(static_cast<void>(this->start(0s, [] {})), "a period that is not above zero");
  EXPECT_DEATH(static_cast<void>(this->start(-1s, [] {})), "a period that is not above zero");
}

/// Exact times.
class RepeatingTimerTest : public testing::Test {
 protected:
  /// Notes the seconds since the start of the test, and takes as long as `work` does.
  [[nodiscard]] RepeatingTimer start(
      std::chrono::nanoseconds period, std::function<void()> work = [] {}) {
    return {queue, clock, period, [this, work = std::move(work)] {
              diary += std::to_string((clock.steadyNow() - began) / 1s) + " ";
              work();
            }};
  }

  SimulatedClock clock;
  SimulatedDispatch dispatch{clock};
  DispatchQueue& queue = dispatch.serialQueue("test.ticks", QualityOfService::background);
  const std::chrono::steady_clock::time_point began = clock.steadyNow();
  std::string diary;
};

TEST_F(RepeatingTimerTest, TickNIsDueAfterNPeriods) {
  const RepeatingTimer timer = start(10s);
  dispatch.advance(40s);
  EXPECT_EQ(diary, "0 10 20 30 40 ");
}

TEST_F(RepeatingTimerTest, SlowTicksDoNotDrift) {
  const RepeatingTimer timer = start(10s, [this] { clock.sleep(3s); });
  dispatch.advance(40s);
  EXPECT_EQ(diary, "0 10 20 30 40 ");
}

TEST_F(RepeatingTimerTest, LateTickDoesNotMoveTheNext) {
  const RepeatingTimer timer = start(10s);
  queue.after(9s, [this] { clock.sleep(5s); });
  dispatch.advance(30s);
  EXPECT_EQ(diary, "0 14 20 30 ");
}

TEST_F(RepeatingTimerTest, LateTicksAreCoalesced) {
  const RepeatingTimer timer = start(10s);
  queue.after(5s, [this] { clock.sleep(40s); });
  dispatch.advance(70s);
  EXPECT_EQ(diary, "0 45 50 60 70 ");
}

TEST_F(RepeatingTimerTest, TickThatTakesLongerThanThePeriodIsFollowedByOneAtOnce) {
  const RepeatingTimer timer = start(10s, [this] {
    if (diary == "0 10 ") clock.sleep(25s);
  });
  dispatch.advance(60s);
  EXPECT_EQ(diary, "0 10 35 40 50 60 ");
}

TEST_F(RepeatingTimerTest, OtherWorksComeBetweenTicksThatFillTheQueue) {
  const RepeatingTimer timer = start(1s, [this] { clock.sleep(5s); });
  for (const auto delay : {2s, 7s}) {
    queue.after(delay, [this] { diary += "work "; });
  }
  dispatch.advance(15s);
  EXPECT_EQ(diary, "0 5 work 10 work 15 ");
}

TEST_F(RepeatingTimerTest, StepOfTheWallClockMovesNoTick) {
  const RepeatingTimer timer = start(10s);
  queue.after(15s, [this] { clock.stepWallClock(-24h); });
  queue.after(25s, [this] { clock.stepWallClock(48h); });
  dispatch.advance(40s);
  EXPECT_EQ(diary, "0 10 20 30 40 ");
}

TEST_F(RepeatingTimerTest, CancelledTimerLeavesNothingThatRepeats) {
  {
    const RepeatingTimer timer = start(10s);
    dispatch.advance(15s);
  }
  dispatch.advance(1h);
  EXPECT_EQ(diary, "0 10 ");
  EXPECT_EQ(dispatch.waitingWorks(), 0u);
}

}  // namespace
}  // namespace lanternfold
