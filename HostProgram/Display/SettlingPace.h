// When a burst of changes is over.
//
// Pure. Used by: `MonitorWatch`.
#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

namespace lanternfold {

/// A panel that appears, or a monitor that is plugged in, is several changes: they are over when
/// none has come for a tenth of a second, and looked at after a second at the latest, however long
/// they go on.
class SettlingPace {
 public:
  using Time = std::chrono::steady_clock::time_point;

  static constexpr std::chrono::milliseconds quiet{100};
  static constexpr std::chrono::milliseconds longest{1000};

  /// A change has come; until when to wait for the next one.
  [[nodiscard]] Time change(Time now) {
    if (!first_) first_ = now;
    return std::min(now + quiet, *first_ + longest);
  }

  /// They have been looked at: the next one begins anew.
  void settle() { first_.reset(); }

 private:
  std::optional<Time> first_;
};

}  // namespace lanternfold
