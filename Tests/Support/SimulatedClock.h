// A clock that moves only when a test moves it.
#pragma once

#include <functional>

#include "Platform/Clock.h"

namespace lanternfold {

/// Starts at 2024-01-01 00:00:00 UTC. One thread. `sleep` lets time pass for the whole world,
/// unless a world with several sleepers takes it over.
class SimulatedClock final : public Clock {
 public:
  [[nodiscard]] std::chrono::system_clock::time_point now() const override { return now_; }
  [[nodiscard]] std::chrono::steady_clock::time_point steadyNow() const override {
    return steadyNow_;
  }
  void sleep(std::chrono::nanoseconds duration) const override;

  /// What a sleep means from now on, for durations above zero; it must let at least that much time
  /// pass on this clock before it returns. An empty function brings back the clock's own.
  void setSleeper(std::function<void(std::chrono::nanoseconds)> sleeper) {
    sleeper_ = std::move(sleeper);
  }

  /// Lets time pass on both clocks; never backwards.
  void advance(std::chrono::nanoseconds duration);
  /// The same, up to a moment of the steady clock; nothing when it has passed.
  void advanceTo(std::chrono::steady_clock::time_point moment);

  /// Steps the wall clock only, in either direction, as a user or a time service does.
  void stepWallClock(std::chrono::nanoseconds step) { addToWallClock(step); }

 private:
  void letPass(std::chrono::nanoseconds duration) const;
  void addToWallClock(std::chrono::nanoseconds step) const {
    now_ += std::chrono::duration_cast<std::chrono::system_clock::duration>(step);
  }

  // Mutable because a sleep through the seam, which reads a clock, moves this one.
  mutable std::chrono::system_clock::time_point now_ =
      std::chrono::sys_days(std::chrono::year(2024) / std::chrono::January / 1);
  // Not the zero of the clock, so that an uninitialised time stands out.
  mutable std::chrono::steady_clock::time_point steadyNow_{std::chrono::hours(1)};
  std::function<void(std::chrono::nanoseconds)> sleeper_;
};

}  // namespace lanternfold
