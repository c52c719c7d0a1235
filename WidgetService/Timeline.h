// A timeline: the entries that a widget shows one after the other, and what happens after the last.
//
// Made by: timeline providers. Read by: whoever hands timelines to a host.
#pragma once

#include <vector>

namespace lanternfold {

enum class TimelineReloadPolicy {
  atEnd,  ///< another timeline is to be asked for once the last entry's date has passed
  never,  ///< the widget stays as it is
};

template <typename Entry>
struct Timeline {
  std::vector<Entry> entries;
  TimelineReloadPolicy policy = TimelineReloadPolicy::atEnd;

  friend bool operator==(const Timeline&, const Timeline&) = default;
};

}  // namespace lanternfold
