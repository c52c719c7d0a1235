// A clock that moves only when a test moves it.
#pragma once

#include "Platform/Clock.h"

namespace lanternfold {

/// Starts at 2024-01-01 00:00:00 UTC. One thread.
class SimulatedClock final : public Clock {
 public:
  [[nodiscard]] std::chrono::system_clock::time_point now() const override { return now_; }
  [[nodiscard]] std::chrono::steady_clock::time_point steadyNow() const override {
    return steadyNow_;
  }

  /// Lets time pass on both clocks; never backwards.
  void advance(std::chrono::nanoseconds duration);
  /// The same, up to a moment of the steady clock; nothing when it has passed.
  void advanceTo(std::chrono::steady_clock::time_point moment);

  /// Steps the wall clock only, in either direction, as a user or a time service does.
  void stepWallClock(std::chrono::nanoseconds step) {
    now_ += std::chrono::duration_cast<std::chrono::system_clock::duration>(step);
  }

 private:
  std::chrono::system_clock::time_point now_ =
      std::chrono::sys_days(std::chrono::year(2024) / std::chrono::January / 1);
  // Not the zero of the clock, so that an uninitialised time stands out.
  std::chrono::steady_clock::time_point steadyNow_{std::chrono::hours(1)};
};

}  // namespace lanternfold
