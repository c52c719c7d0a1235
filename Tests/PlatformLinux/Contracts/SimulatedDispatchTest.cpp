// What only the simulated side of the dispatch seam has: virtual time and a seeded order.
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

class SimulatedDispatchTest : public testing::Test {
 protected:
  [[nodiscard]] DispatchQueue& serial(std::string_view label = "test.serial") {
    return dispatch.serialQueue(label, QualityOfService::utility);
  }

  SimulatedClock clock;
  SimulatedDispatch dispatch{clock};
};

/// The order in which three works each of three queues run under `seed`: a letter for the queue, a
/// digit for the work.
std::string orderUnder(std::uint64_t seed) {
  SimulatedClock clock;
  SimulatedDispatch dispatch(clock, seed);
  std::string order;
  for (const char digit : {'1', '2', '3'}) {
    for (const char letter : {'a', 'b', 'c'}) {
      dispatch.serialQueue(std::string(1, letter), QualityOfService::utility)
          .async([&order, letter, digit] { order += {letter, digit, ' '}; });
    }
  }
  dispatch.runReady();
  return order;
}

TEST_F(SimulatedDispatchTest, SameSeedGivesTheSameOrder) {
  for (std::uint64_t seed = 0; seed < 20; ++seed) EXPECT_EQ(orderUnder(seed), orderUnder(seed));
}

TEST_F(SimulatedDispatchTest, SeedsGiveManyOrdersThatAllKeepEachQueuesOwn) {
  std::map<std::string, int> orders;
  for (std::uint64_t seed = 0; seed < 200; ++seed) {
    const std::string order = orderUnder(seed);
    ++orders[order];
    for (const std::string queue : {"a", "b", "c"}) {
      EXPECT_LT(order.find(queue + "1"), order.find(queue + "2")) << order;
      EXPECT_LT(order.find(queue + "2"), order.find(queue + "3")) << order;
    }
  }
  EXPECT_GT(orders.size(), 100u);
}

TEST_F(SimulatedDispatchTest, ConcurrentQueueRunsInAnyOrder) {
  std::map<std::string, int> orders;
  for (std::uint64_t seed = 0; seed < 100; ++seed) {
    SimulatedDispatch seeded(clock, seed);
    std::string order;
    for (const char letter : {'a', 'b', 'c'}) {
      seeded.globalQueue(QualityOfService::utility).async([&order, letter] { order += letter; });
    }
    seeded.runReady();
    ++orders[order];
  }
  EXPECT_EQ(orders.size(), 6u) << "every permutation of three";
}

TEST_F(SimulatedDispatchTest, RunReadyLetsNoTimePass) {
  const auto before = clock.steadyNow();
  std::string order;
  serial().after(1ns, [&order] { order += "later"; });
  serial().async([&] {
    order += "a";
    serial().async([&order] { order += "b"; });
  });
  dispatch.runReady();
  EXPECT_EQ(order, "ab");
  EXPECT_EQ(clock.steadyNow(), before);
  EXPECT_EQ(dispatch.waitingWorks(), 1u);
}

TEST_F(SimulatedDispatchTest, AdvanceRunsWhatIsDueAtItsMoment) {
  const auto start = clock.steadyNow();
  std::vector<std::chrono::nanoseconds> ranAt;
  for (const auto delay : {30s, 10s, 20s, 31s}) {
    serial().after(delay, [&] { ranAt.push_back(clock.steadyNow() - start); });
  }
  dispatch.advance(30s);
  EXPECT_EQ(ranAt, (std::vector<std::chrono::nanoseconds>{10s, 20s, 30s}));
  EXPECT_EQ(clock.steadyNow() - start, 30s);
  dispatch.advance(1s);
  EXPECT_EQ(ranAt.size(), 4u);
}

TEST_F(SimulatedDispatchTest, WallClockFollowsAndMayBeStepped) {
  const auto wall = clock.now();
  const auto steady = clock.steadyNow();
  serial().after(10s, [this] { clock.stepWallClock(-1h); });
  dispatch.advance(60s);
  EXPECT_EQ(clock.now() - wall, 60s - 1h);
  EXPECT_EQ(clock.steadyNow() - steady, 60s);
}

TEST_F(SimulatedDispatchTest, RunUntilStopsAsSoonAsItIsDone) {
  int ticks = 0;
  const std::function<void()> tick = [&] {
    ++ticks;
    serial().after(1s, tick);
  };
  tick();
  EXPECT_TRUE(dispatch.runUntil([&ticks] { return ticks == 5; }, 1h));
  EXPECT_EQ(ticks, 5);
  EXPECT_FALSE(dispatch.runUntil([] { return false; }, 10s));
  EXPECT_EQ(ticks, 15);
}

TEST_F(SimulatedDispatchTest, RunUntilGivesUpWhenNothingWaits) {
  const auto before = clock.steadyNow();
  EXPECT_FALSE(dispatch.runUntil([] { return false; }, 1h));
  EXPECT_EQ(clock.steadyNow(), before);
}

TEST_F(SimulatedDispatchTest, WeekOfSecondsIsSimulatedWhole) {
  constexpr int secondsOfAWeek = 7 * 24 * 60 * 60;
  int samples = 0;
  const std::function<void()> sample = [&] {
    ++samples;
    serial().after(1s, sample);
  };
  serial().after(1s, sample);
  dispatch.advance(std::chrono::seconds(secondsOfAWeek));
  EXPECT_EQ(samples, secondsOfAWeek);
}

TEST_F(SimulatedDispatchTest, ManyDelayedWorksRunInTheOrderOfTime) {
  std::vector<std::chrono::steady_clock::time_point> ranAt;
  for (int index = 0; index < 10'000; ++index) {
    serial().after(std::chrono::milliseconds((index * 7919) % 10'007),
                   [&] { ranAt.push_back(clock.steadyNow()); });
  }
  dispatch.advance(11s);
  EXPECT_EQ(ranAt.size(), 10'000u);
  EXPECT_TRUE(std::ranges::is_sorted(ranAt));
}

TEST_F(SimulatedDispatchTest, SyncLetsNoTimePass) {
  const auto before = clock.steadyNow();
  serial().after(1ns, [] {});
  serial().sync([] {});
  EXPECT_EQ(clock.steadyNow(), before);
  EXPECT_EQ(dispatch.waitingWorks(), 1u);
}

TEST_F(SimulatedDispatchTest, SyncComesAfterWhatBecameDueInASleep) {
  std::string order;
  serial("outer").async([&] {
    serial().after(1s, [&order] { order += "due "; });
    serial().after(3s, [&order] { order += "later "; });
    clock.sleep(2s);
    serial().sync([&order] { order += "awaited "; });
  });
  dispatch.advance(10s);
  EXPECT_EQ(order, "due awaited later ");
}

TEST_F(SimulatedDispatchTest, SleepInsideAWorkMakesOthersLate) {
  const auto start = clock.steadyNow();
  std::vector<std::chrono::nanoseconds> ranAt;
  const auto note = [&] { ranAt.push_back(clock.steadyNow() - start); };
  serial().after(1s, [&] { clock.sleep(5s); });
  serial("other").after(2s, note);
  serial("other").after(6s, note);
  serial("other").after(7s, note);
  dispatch.advance(10s);
  EXPECT_EQ(ranAt, (std::vector<std::chrono::nanoseconds>{6s, 6s, 7s}));
  EXPECT_EQ(clock.steadyNow() - start, 10s);
}

TEST_F(SimulatedDispatchTest, SleepBeyondTheEndOfAnAdvanceOverrunsIt) {
  const auto start = clock.steadyNow();
  serial().after(1s, [&] { clock.sleep(1h); });
  dispatch.advance(10s);
  EXPECT_EQ(clock.steadyNow() - start, 1h + 1s);
}

TEST_F(SimulatedDispatchTest, SleepBeyondTheEndOfAnAdvanceLeavesTheRestToTheNext) {
  std::string order;
  const std::function<void()> slow = [&] {
    clock.sleep(5s);
    order += "slow ";
    serial().async(slow);
  };
  slow();
  dispatch.advance(12s);
  EXPECT_EQ(order, "slow slow slow slow ");
  dispatch.advance(1s);
  EXPECT_EQ(order, "slow slow slow slow slow ");
}

TEST_F(SimulatedDispatchTest, RunReadyGoesOnBehindASleep) {
  std::string order;
  serial().async([&] {
    clock.sleep(5s);
    order += "slow ";
  });
  serial().async([&order] { order += "next "; });
  serial().after(3s, [&order] { order += "due"; });
  dispatch.runReady();
  EXPECT_EQ(order, "slow next due");
}

TEST_F(SimulatedDispatchTest, SleepMovesBothClocks) {
  const auto wall = clock.now();
  clock.sleep(50ms);
  EXPECT_EQ(clock.now() - wall, 50ms);
}

TEST_F(SimulatedDispatchTest, WorldMayTakeOverWhatASleepMeans) {
  std::vector<std::chrono::nanoseconds> asked;
  clock.setSleeper([&](std::chrono::nanoseconds duration) {
    asked.push_back(duration);
    clock.advance(2 * duration);
  });
  const auto before = clock.steadyNow();
  clock.sleep(0ns);
  clock.sleep(50ms);
  EXPECT_EQ(asked, (std::vector<std::chrono::nanoseconds>{50ms}));
  EXPECT_EQ(clock.steadyNow() - before, 100ms);
}

using SimulatedDispatchDeathTest = SimulatedDispatchTest;

TEST_F(SimulatedDispatchDeathTest, MomentThatNeverEnds) {
  const std::function<void()> again = [&] { serial().async(again); };
  again();
  EXPECT_DEATH(dispatch.runReady(), "append to each other without end");
}

TEST_F(SimulatedDispatchDeathTest, WorkThatRunsTheQueues) {
  serial().async([this] { dispatch.runReady(); });
  EXPECT_DEATH(dispatch.runReady(), "a work ran the simulated queues");
}

TEST_F(SimulatedDispatchDeathTest, SyncedWorkThatRunsTheQueues) {
  EXPECT_DEATH(serial().sync([this] { dispatch.runReady(); }), "a work ran the simulated queues");
}

TEST_F(SimulatedDispatchDeathTest, SleepThatEndsTooEarly) {
  clock.setSleeper([](std::chrono::nanoseconds) {});
  EXPECT_DEATH(clock.sleep(1s), "ended a sleep before its time");
}

TEST_F(SimulatedDispatchDeathTest, ClockThatRunsBackwards) {
  EXPECT_DEATH(clock.advance(-1ns), "asked to run backwards");
}

}  // namespace
}  // namespace lanternfold
