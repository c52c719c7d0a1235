// The part of a simulated program that waits, and that can be killed while it does.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "Tests/Simulation/RunContext.h"

namespace lanternfold::simulation {

/// Thrown through a program that is killed, at the place where it waits or touches the world.
struct Killed {};

/// A program's hold on the scheduler. Thrown exceptions apart, its operations are called by the
/// program itself, and `kill` by the world.
class Turn {
 public:
  using TimePoint = Scheduler::TimePoint;

  /// `run` outlives it.
  Turn(RunContext& run, std::uint32_t number) : run_(run), number_(number) {}

  [[nodiscard]] std::uint32_t number() const { return number_; }

  /// Has `body` run by turns; exceptions other than `Killed` end the whole program.
  void begin(std::function<void()> body);
  [[nodiscard]] bool hasEnded() const { return !task_ || task_->isFinished(); }

  /// Waits because the program wants to.
  void waitUntil(TimePoint moment);
  /// Waits because the world is slow.
  void holdUp(std::chrono::nanoseconds duration);
  /// How long the world has held this program up, all in all.
  [[nodiscard]] std::chrono::nanoseconds heldUp() const { return heldUp_; }
  /// Whether this program is the one that runs.
  [[nodiscard]] bool isCurrent() const { return task_ && run_.scheduler.current() == task_.get(); }

  /// Ends the program where it waits.
  void kill();
  /// Ends it when it has touched the disk so many times more.
  void killAfter(std::uint64_t steps) { stepsToLive_ = steps; }
  /// Tells that the program is about to touch the disk.
  void step();
  /// From the kill on, nothing that its objects still do reaches the world.
  [[nodiscard]] bool isKilled() const { return isKilled_; }

 private:
  void wait(TimePoint moment);
  void die();

  RunContext& run_;
  const std::uint32_t number_;
  std::shared_ptr<Scheduler::Task> task_;
  std::chrono::nanoseconds heldUp_{};
  std::optional<std::uint64_t> stepsToLive_;
  bool isKilled_ = false;
};

}  // namespace lanternfold::simulation
