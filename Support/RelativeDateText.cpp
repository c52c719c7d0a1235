#include "Support/RelativeDateText.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include <unicode/calendar.h>
#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/reldatefmt.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/udisplaycontext.h>
#include <unicode/unistr.h>

namespace lanternfold {
namespace {

using Moment = std::chrono::system_clock::time_point;

/// A name that is too long makes a bogus locale, with which ICU crashes when it makes a format
/// (72).
icu::Locale usableLocale(const std::string& name) {
  const icu::Locale locale(name.c_str());
  return locale.isBogus() != 0 ? icu::Locale::getEnglish() : locale;
}

UDate dateOf(Moment moment) {
  using Milliseconds = std::chrono::duration<double, std::milli>;
  return std::chrono::duration_cast<Milliseconds>(moment.time_since_epoch()).count();
}

std::unique_ptr<icu::TimeZone> timeZoneOf(const DateHabits& habits) {
  return std::unique_ptr<icu::TimeZone>(
      habits.timeZone.empty()
          ? icu::TimeZone::createDefault()
          : icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(habits.timeZone)));
}

/// The number of the day on which `moment` falls in the zone.
std::int32_t dayOf(Moment moment, const icu::TimeZone& zone, UErrorCode& status) {
  const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(zone, status));
  if (U_FAILURE(status)) return 0;
  calendar->setTime(dateOf(moment), status);
  return calendar->get(UCAL_JULIAN_DAY, status);
}

std::optional<UDateDirection> directionOf(std::int32_t daysFromNow) {
  switch (daysFromNow) {
    case -2:
      return UDAT_DIRECTION_LAST_2;
    case -1:
      return UDAT_DIRECTION_LAST;
    case 0:
      return UDAT_DIRECTION_THIS;
    case 1:
      return UDAT_DIRECTION_NEXT;
    case 2:
      return UDAT_DIRECTION_NEXT_2;
    default:
      return std::nullopt;
  }
}

/// Makes the parts of the text and puts them together. After a failure they are empty.
class RelativeDateMaker {
 public:
  RelativeDateMaker(const DateHabits& habits, UErrorCode& status)
      : locale_(usableLocale(habits.locale)),
        zone_(timeZoneOf(habits)),
        words_(locale_, nullptr, UDAT_STYLE_LONG,
               locale_.getLanguage() == std::string_view("en")
                   ? UDISPCTX_CAPITALIZATION_FOR_BEGINNING_OF_SENTENCE
                   : UDISPCTX_CAPITALIZATION_NONE,
               status) {}

  icu::UnicodeString text(Moment moment, Moment now, UErrorCode& status) const {
    icu::UnicodeString day = word(moment, now, status);
    if (day.isEmpty()) day = shortDate(moment);
    icu::UnicodeString result;
    words_.combineDateAndTime(day, shortTime(moment, status), result, status);
    return result;
  }

 private:
  /// Empty when the language has none for that day.
  icu::UnicodeString word(Moment moment, Moment now, UErrorCode& status) const {
    icu::UnicodeString word;
    const auto direction = directionOf(dayOf(moment, *zone_, status) - dayOf(now, *zone_, status));
    if (direction) words_.format(*direction, UDAT_ABSOLUTE_DAY, word, status);
    return word;
  }

  icu::UnicodeString shortDate(Moment moment) const {
    icu::UnicodeString text;
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale_));
    if (format == nullptr) return text;
    format->setTimeZone(*zone_);
    return format->format(dateOf(moment), text);
  }

  /// Made of a skeleton, because the short time of a locale is that of its language alone where ICU
  /// has no data of both.
  icu::UnicodeString shortTime(Moment moment, UErrorCode& status) const {
    icu::UnicodeString text;
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
        icu::DateTimePatternGenerator::createInstance(locale_, status));
    if (U_FAILURE(status)) return text;
    icu::SimpleDateFormat format(patterns->getBestPattern(u"jmm", status), locale_, status);
    if (U_FAILURE(status)) return text;
    format.setTimeZone(*zone_);
    return format.format(dateOf(moment), text);
  }

  icu::Locale locale_;
  std::unique_ptr<icu::TimeZone> zone_;
  icu::RelativeDateTimeFormatter words_;
};

/// From the noon of a day to the first moment of the next: every day has a noon, but a clock may go
/// forward at midnight.
void goToNextDay(icu::Calendar& calendar, UErrorCode& status) {
  const auto setHour = [&calendar](std::int32_t hour) {
    calendar.set(UCAL_HOUR_OF_DAY, hour);
    for (const auto field : {UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND}) calendar.set(field, 0);
  };
  setHour(12);
  calendar.add(UCAL_DATE, 1, status);
  setHour(0);
}

}  // namespace

std::string relativeDateText(Moment moment, Moment now, const DateHabits& habits) {
  constexpr char16_t noBreakSpace = u'\u00A0';
  constexpr char16_t narrowNoBreakSpace = u'\u202F';
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString result = RelativeDateMaker(habits, status).text(moment, now, status);
  std::string text;
  if (U_FAILURE(status)) return text;
  result.findAndReplace(icu::UnicodeString(narrowNoBreakSpace), icu::UnicodeString(noBreakSpace));
  return result.toUTF8String(text);
}

Moment endOfDay(Moment moment, const DateHabits& habits) {
  const Moment inADay = moment + std::chrono::hours(24);
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::TimeZone> zone = timeZoneOf(habits);
  const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(*zone, status));
  if (U_FAILURE(status)) return inADay;
  calendar->setTime(dateOf(moment), status);
  goToNextDay(*calendar, status);
  const UDate end = calendar->getTime(status);
  if (U_FAILURE(status)) return inADay;
  const std::chrono::milliseconds sinceEpoch(static_cast<std::int64_t>(end));
  return std::max(Moment(sinceEpoch), moment + std::chrono::milliseconds(1));
}

}  // namespace lanternfold
