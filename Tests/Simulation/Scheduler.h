// Virtual time shared by simulated programs: one runs at a time, and gives the turn back whenever
// it waits.
//
// Who is due first runs next; between equals a draw decides. Time stands still while a program
// runs, and jumps to the next moment that somebody waits for.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <queue>
#include <vector>

#include "Tests/Simulation/Fiber.h"
#include "Tests/Simulation/SeededRandom.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold::simulation {

class Scheduler {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// A program that runs by turns.
  class Task {
   public:
    explicit Task(std::function<void()> body) : fiber_(std::move(body)) {}
    [[nodiscard]] bool isFinished() const { return fiber_.isFinished(); }

   private:
    friend class Scheduler;
    Fiber fiber_;
    std::uint64_t turn_ = 0;  // an entry of an earlier turn is stale
  };

  /// Both outlive the scheduler.
  Scheduler(SimulatedClock& clock, SeededRandom& random) : clock_(clock), random_(random) {}

  /// Has `event` happen at a moment, outside of every program.
  void at(TimePoint moment, std::function<void()> event);
  void after(std::chrono::nanoseconds delay, std::function<void()> event) {
    at(clock_.steadyNow() + delay, std::move(event));
  }

  /// Begins a program, with its first turn now.
  [[nodiscard]] std::shared_ptr<Task> start(std::function<void()> body);
  /// Gives a program that waits its turn now, ahead of the time it waits for.
  void wake(const std::shared_ptr<Task>& task);

  /// Lets everything happen until a moment, or until `shallStop`.
  void runUntil(TimePoint end, const std::function<bool()>& shallStop);

  /// Gives the turn back until a moment, or until somebody wakes the program; called by a program.
  void waitUntil(TimePoint moment);
  /// The program whose turn it is, or null.
  [[nodiscard]] Task* current() const { return current_.get(); }

 private:
  struct Entry {
    TimePoint due;
    std::uint64_t draw;  // between equal times
    std::shared_ptr<Task> task;
    std::uint64_t turn = 0;
    std::function<void()> event;

    friend bool operator>(const Entry& left, const Entry& right) {
      return left.due != right.due ? left.due > right.due : left.draw > right.draw;
    }
  };

  void push(Entry entry);
  [[nodiscard]] Entry pop();
  void run(Entry entry);

  SimulatedClock& clock_;
  SeededRandom& random_;
  std::vector<Entry> entries_;  // a heap, the earliest on top
  std::shared_ptr<Task> current_;
};

}  // namespace lanternfold::simulation
