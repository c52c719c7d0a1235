#include <string>

#include <gtest/gtest.h>

#include "Tests/Simulation/Fiber.h"
#include "Tests/Simulation/Turn.h"

namespace lanternfold::simulation {
namespace {

TEST(FiberTest, TakesTurnsWithWhoResumesIt) {
  std::string order;
  Fiber* self = nullptr;
  Fiber fiber([&] {
    order += 'a';
    self->suspend();
    order += 'c';
  });
  self = &fiber;
  fiber.resume();
  order += 'b';
  fiber.resume();
  EXPECT_EQ(order, "abc");
  EXPECT_TRUE(fiber.isFinished());
}

TEST(FiberTest, AnExceptionStaysOnItsOwnStack) {
  Fiber* self = nullptr;
  int caught = 0;
  Fiber fiber([&] {
    try {
      self->suspend();
      throw Killed();
    } catch (const Killed&) {
      ++caught;
    }
  });
  self = &fiber;
  fiber.resume();
  fiber.resume();
  EXPECT_EQ(caught, 1);
}

TEST(TurnTest, TimeStandsStillWhileAProgramRunsAndJumpsWhileItWaits) {
  RunContext run(1);
  Turn first(run, 1);
  Turn second(run, 2);
  std::string order;
  const auto begin = run.clock.steadyNow();
  first.begin([&] {
    first.waitUntil(begin + std::chrono::hours(2));
    order += "first at two ";
  });
  second.begin([&] {
    second.waitUntil(begin + std::chrono::hours(1));
    order += "second at one ";
    second.holdUp(std::chrono::hours(2));
    order += "second at three";
  });
  run.scheduler.runUntil(begin + std::chrono::hours(24), [] { return false; });
  EXPECT_EQ(order, "second at one first at two second at three");
  EXPECT_TRUE(first.hasEnded());
  EXPECT_EQ(second.heldUp(), std::chrono::hours(2));
  EXPECT_EQ(run.clock.steadyNow() - begin, std::chrono::hours(24));
}

TEST(TurnTest, AKilledProgramUnwindsWhereItWaits) {
  RunContext run(1);
  Turn turn(run, 1);
  bool isUnwound = false;
  turn.begin([&] {
    struct Witness {
      bool& isUnwound;
      ~Witness() { isUnwound = true; }
    } const witness{isUnwound};
    turn.waitUntil(run.clock.steadyNow() + std::chrono::hours(1));
    ADD_FAILURE() << "the program lived on";
  });
  run.scheduler.after(std::chrono::minutes(1), [&] { turn.kill(); });
  run.scheduler.runUntil(run.clock.steadyNow() + std::chrono::minutes(2), [] { return false; });
  EXPECT_TRUE(isUnwound);
  EXPECT_TRUE(turn.hasEnded());
}

TEST(TurnTest, AProgramDiesBeforeTheStepThatWasGivenToIt) {
  RunContext run(1);
  Turn turn(run, 1);
  turn.killAfter(2);
  int steps = 0;
  turn.begin([&] {
    while (true) {
      turn.step();
      ++steps;
    }
  });
  run.scheduler.runUntil(run.clock.steadyNow(), [] { return false; });
  EXPECT_EQ(steps, 2);
}

}  // namespace
}  // namespace lanternfold::simulation
