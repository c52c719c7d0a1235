// The seam to the clocks.
//
// Production side: `SystemClock`. Fake: `SimulatedClock`.
#pragma once

#include <chrono>

namespace lanternfold {

/// Any thread; never fails.
class Clock {
 public:
  virtual ~Clock() = default;

  /// Wall-clock time; may step in either direction.
  [[nodiscard]] virtual std::chrono::system_clock::time_point now() const = 0;

  /// Time that only goes forward, for measuring intervals.
  [[nodiscard]] virtual std::chrono::steady_clock::time_point steadyNow() const = 0;

  /// Blocks the calling thread until `duration` has passed on the steady clock; not at all for a
  /// duration of zero or less. Nothing wakes it earlier: for waits of a few seconds at the most.
  virtual void sleep(std::chrono::nanoseconds duration) const = 0;
};

}  // namespace lanternfold
