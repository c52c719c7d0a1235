#include "Tests/Support/SimulatedClock.h"

#include "Support/FatalError.h"

namespace lanternfold {

void SimulatedClock::advance(std::chrono::nanoseconds duration) {
  if (duration < std::chrono::nanoseconds::zero()) {
    fatalError("a simulated clock was asked to run backwards");
  }
  letPass(duration);
}

void SimulatedClock::advanceTo(std::chrono::steady_clock::time_point moment) {
  if (moment > steadyNow_) advance(moment - steadyNow_);
}

void SimulatedClock::sleep(std::chrono::nanoseconds duration) const {
  if (duration <= std::chrono::nanoseconds::zero()) return;
  if (!sleeper_) {
    letPass(duration);
    return;
  }
  const auto wakesAt = steadyNow_ + duration;
  sleeper_(duration);
  if (steadyNow_ < wakesAt) fatalError("a simulated world ended a sleep before its time");
}

void SimulatedClock::letPass(std::chrono::nanoseconds duration) const {
  steadyNow_ += duration;
  addToWallClock(duration);
}

}  // namespace lanternfold
