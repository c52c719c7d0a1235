// When a program that fails again and again may be started once more.
//
// Used by: `ExtensionClient`. Pure: the moments come in.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>

namespace lanternfold {

/// After a failure a start waits for a second, and for twice as long after each further one, up to
/// five minutes. Who fails five times within a minute is left alone.
class RestartPolicy {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;
  static constexpr std::chrono::seconds firstPause{1};
  static constexpr std::chrono::seconds longestPause{300};
  static constexpr std::size_t mostFailures = 5;
  static constexpr std::chrono::seconds failureWindow{60};

  /// It could not be started, or has failed later. `now` is not before that of earlier calls.
  void failed(TimePoint now);
  /// It has done what it is for: a later failure counts as the first one, but towards those within
  /// a minute.
  void succeeded();
  /// Somebody wants it to be started whatever has happened.
  void forgive() { *this = RestartPolicy(); }

  [[nodiscard]] bool hasFailedTooOften() const { return hasFailedTooOften_; }
  /// The first moment when it may be started.
  [[nodiscard]] TimePoint nextStart() const { return nextStart_; }

 private:
  std::chrono::seconds pause_{0};  ///< the last one; zero before the first
  TimePoint nextStart_ = TimePoint::min();
  std::deque<TimePoint> failures_;  ///< the last ones
  bool hasFailedTooOften_ = false;
};

}  // namespace lanternfold
