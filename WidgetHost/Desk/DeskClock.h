// What time it is on a desk: moments that come however the wall clock is set, and dates.
//
// Made by: the desk. Belongs to one thread.
#pragma once

#include <chrono>

#include "Platform/Clock.h"
#include "Support/RelativeDateText.h"

namespace lanternfold {

/// Dates go with the steady clock until `look`, so that a date that is waited for stays the same
/// moment, whenever it is asked for.
class DeskClock {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;
  using Date = std::chrono::system_clock::time_point;

  /// `clock` outlives this.
  DeskClock(const Clock& clock, DateHabits habits);

  /// Follows a wall clock that was set, or that went on while the machine was suspended. One that
  /// is corrected little by little is followed second by second.
  void look();

  [[nodiscard]] TimePoint now() const { return clock_.steadyNow(); }
  [[nodiscard]] Date date() const;
  /// When `date` comes; the present for one that has passed, and at most a year away.
  [[nodiscard]] TimePoint momentOf(Date date) const;

  /// Whether it is another day of the user than at the last call, or at the beginning.
  bool takeNewDay();
  [[nodiscard]] Date endOfDay() const { return endOfDay_; }

 private:
  [[nodiscard]] std::chrono::nanoseconds aheadOfSteady() const;

  const Clock& clock_;
  DateHabits habits_;
  std::chrono::nanoseconds ahead_;  ///< of the steady clock the dates are
  Date endOfDay_;
};

}  // namespace lanternfold
