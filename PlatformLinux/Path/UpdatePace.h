// When to report a change: the first of a burst at once, then no more than ten a second, the last
// always.
//
// Used by: the path monitor.
#pragma once

#include <chrono>
#include <optional>

namespace lanternfold {

/// Not shared between threads. Knows no clock: the moments are given.
class UpdatePace {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  static constexpr std::chrono::milliseconds shortestGap{100};

  /// Notes a change. The moment at which it is to be reported; none when a report that is already
  /// due will cover it.
  [[nodiscard]] std::optional<Moment> changed(Moment now);

  /// The due report was made from a look at the tables taken at `now`: it covers every change so
  /// far.
  void reported(Moment now);

 private:
  std::optional<Moment> lastReport_;
  bool isDue_ = false;
};

}  // namespace lanternfold
