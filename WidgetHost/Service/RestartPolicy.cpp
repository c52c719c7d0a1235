#include "WidgetHost/Service/RestartPolicy.h"

#include <algorithm>

namespace lanternfold {

void RestartPolicy::failed(TimePoint now) {
  pause_ = std::clamp(2 * pause_, firstPause, longestPause);
  nextStart_ = now + pause_;
  failures_.push_back(now);
  if (failures_.size() > mostFailures) failures_.pop_front();
  hasFailedTooOften_ = hasFailedTooOften_ || (failures_.size() == mostFailures &&
                                              now - failures_.front() <= failureWindow);
}

void RestartPolicy::succeeded() {
  pause_ = std::chrono::seconds(0);
  nextStart_ = TimePoint::min();
}

}  // namespace lanternfold
