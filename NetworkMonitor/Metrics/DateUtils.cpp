#include "NetworkMonitor/Metrics/DateUtils.h"

namespace lanternfold {

std::chrono::system_clock::time_point DateUtils::currentDate() const { return clock_.now(); }

std::optional<std::chrono::system_clock::time_point> DateUtils::lastBootDate() const {
  return kernel_.bootTime();
}

}  // namespace lanternfold
