#include "PlatformLinux/Path/UpdatePace.h"

#include <algorithm>

namespace lanternfold {

std::optional<UpdatePace::Moment> UpdatePace::changed(Moment now) {
  if (isDue_) return std::nullopt;
  isDue_ = true;
  return lastReport_ ? std::max(now, *lastReport_ + shortestGap) : now;
}

void UpdatePace::reported(Moment now) {
  isDue_ = false;
  lastReport_ = now;
}

}  // namespace lanternfold
