#include "Tests/Support/SimulatedClock.h"

#include "Support/FatalError.h"

namespace lanternfold {

void SimulatedClock::advance(std::chrono::nanoseconds duration) {
  if (duration < std::chrono::nanoseconds::zero()) {
    fatalError("a simulated clock was asked to run backwards");
  }
  steadyNow_ += duration;
  stepWallClock(duration);
}

void SimulatedClock::advanceTo(std::chrono::steady_clock::time_point moment) {
  if (moment > steadyNow_) advance(moment - steadyNow_);
}

}  // namespace lanternfold
