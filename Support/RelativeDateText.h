// A moment as people say it: "Today, 10:30 AM" for today, a short date otherwise.
//
// Read by: the widgets' time of drawing, and the desk, which has it drawn anew.
#pragma once

#include <chrono>
#include <string>

namespace lanternfold {

/// How a user reads dates.
struct DateHabits {
  /// As ICU names it ("de_AT"): the words are the language's, the order of a date's parts too, and
  /// the hours are counted to 12 or 24 as in its region.
  std::string locale = "en";
  /// A name of the time zone database ("Europe/Rome"); empty for the machine's own zone, which is
  /// that of the environment (TZ).
  std::string timeZone;
};

/// Short date and short time of `moment` in UTF-8, the date as a word where the language has one
/// for that day as seen from `now`. Days begin at midnight in the user's zone. English begins the
/// word with a capital letter, as the text stands alone there; other languages write it as in a
/// sentence. Spaces that keep two parts together are U+00A0, which every typeface has, and not the
/// narrow one. Empty only when no locale data can be loaded. Any thread.
[[nodiscard]] std::string relativeDateText(std::chrono::system_clock::time_point moment,
                                           std::chrono::system_clock::time_point now,
                                           const DateHabits& habits);

/// The first moment at which that text may be another one: the next midnight in the user's zone, or
/// the hour that stands in its place. Later than `moment`. Any thread.
[[nodiscard]] std::chrono::system_clock::time_point endOfDay(
    std::chrono::system_clock::time_point moment, const DateHabits& habits);

}  // namespace lanternfold
