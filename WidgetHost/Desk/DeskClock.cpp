#include "WidgetHost/Desk/DeskClock.h"

#include <utility>

#include "WidgetHost/Desk/CardContent.h"

namespace lanternfold {
namespace {

constexpr std::chrono::seconds smallestStep{1};

/// A little later, since the wall clock may be behind these dates by less than a step.
DeskClock::Date endOfDayOnAnyClock(DeskClock::Date date, const DateHabits& habits) {
  return endOfDay(date - smallestStep, habits) + smallestStep;
}

}  // namespace

DeskClock::DeskClock(const Clock& clock, DateHabits habits)
    : clock_(clock),
      habits_(std::move(habits)),
      ahead_(aheadOfSteady()),
      endOfDay_(endOfDayOnAnyClock(date(), habits_)) {}

void DeskClock::look() {
  const auto ahead = aheadOfSteady();
  if (std::chrono::abs(ahead - ahead_) >= smallestStep) ahead_ = ahead;
}

std::chrono::nanoseconds DeskClock::aheadOfSteady() const {
  return clock_.now().time_since_epoch() - clock_.steadyNow().time_since_epoch();
}

DeskClock::Date DeskClock::date() const { return Date(now().time_since_epoch() + ahead_); }

DeskClock::TimePoint DeskClock::momentOf(Date date) const {
  return now() + untilDate(date, this->date());
}

bool DeskClock::takeNewDay() {
  const Date end = endOfDayOnAnyClock(date(), habits_);
  return std::exchange(endOfDay_, end) != end;
}

}  // namespace lanternfold
