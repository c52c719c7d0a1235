#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

#include "Support/RelativeDateText.h"

namespace lanternfold {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using Moment = std::chrono::system_clock::time_point;

constexpr Moment morning = sys_days(std::chrono::year(2026) / 11 / 22) + hours(5) + minutes(18);

/// What is said at `moment` of that moment itself, in UTC.
std::string today(const std::string& locale, Moment moment = morning) {
  return relativeDateText(moment, moment, {.locale = locale, .timeZone = "UTC"});
}

std::string inZone(const std::string& zone, Moment moment, Moment now) {
  return relativeDateText(moment, now, {.locale = "en_GB", .timeZone = zone});
}

TEST(RelativeDateText, SaysTodayInTheLanguageOfTheUser) {
  EXPECT_EQ(today("en_GB"), "Today, 05:18");
  EXPECT_EQ(today("de_DE"), "heute, 05:18");
  EXPECT_EQ(today("fr_FR"), "aujourd\u2019hui, 05:18");
  EXPECT_EQ(today("it_IT"), "oggi, 05:18");
  EXPECT_EQ(today("es_ES"), "hoy, 5:18");
  EXPECT_EQ(today("ja_JP"), "\u4ECA\u65E5 5:18");
  EXPECT_EQ(today("zh_CN"), "\u4ECA\u5929 05:18");
  EXPECT_EQ(today("ru_RU"), "\u0441\u0435\u0433\u043E\u0434\u043D\u044F, 05:18");
  EXPECT_EQ(today("ar_AE"), "\u0627\u0644\u064A\u0648\u0645\u060C 5:18 \u0635");
}

TEST(RelativeDateText, HasTheDigitsOfTheRegion) {
  EXPECT_EQ(today("ar_EG"), "\u0627\u0644\u064A\u0648\u0645\u060C \u0665:\u0661\u0668 \u0635");
}

TEST(RelativeDateText, CountsHoursAsInTheRegion) {
  const Moment afternoon = morning + hours(12);
  EXPECT_EQ(today("en_US", afternoon), "Today, 5:18\u00A0PM");
  EXPECT_EQ(today("en_GB", afternoon), "Today, 17:18");
  EXPECT_EQ(today("en", afternoon), "Today, 5:18\u00A0PM");
  EXPECT_EQ(today("de_DE", afternoon), "heute, 17:18");
}

TEST(RelativeDateText, CountsHoursAsInARegionOfAnotherLanguage) {
  EXPECT_EQ(today("en_PL", morning + hours(12)), "Today, 17:18");
  EXPECT_EQ(today("de_GB"), "heute, 05:18");
}

TEST(RelativeDateText, MidnightAndNoon) {
  const Moment midnight = sys_days(std::chrono::year(2026) / 11 / 22);
  EXPECT_EQ(today("en_US", midnight), "Today, 12:00\u00A0AM");
  EXPECT_EQ(today("en_US", midnight + hours(12)), "Today, 12:00\u00A0PM");
  EXPECT_EQ(today("de_DE", midnight), "heute, 00:00");
}

TEST(RelativeDateText, NarrowSpacesAreOrdinaryNoBreakSpaces) {
  for (const char* locale : {"en_US", "ar_EG", "fr_CA", "es_MX", "en_AU"}) {
    EXPECT_EQ(today(locale, morning + hours(12)).find("\u202F"), std::string::npos) << locale;
  }
}

TEST(RelativeDateText, SaysYesterdayAndTomorrow) {
  EXPECT_EQ(inZone("UTC", morning - days(1), morning), "Yesterday, 05:18");
  EXPECT_EQ(inZone("UTC", morning + days(1), morning), "Tomorrow, 05:18");
}

TEST(RelativeDateText, HasWordsForTwoDaysWhereTheLanguageHas) {
  const DateHabits german{.locale = "de_DE", .timeZone = "UTC"};
  EXPECT_EQ(relativeDateText(morning - days(2), morning, german), "vorgestern, 05:18");
  EXPECT_EQ(relativeDateText(morning + days(2), morning, german), "\u00FCbermorgen, 05:18");
  EXPECT_EQ(inZone("UTC", morning - days(2), morning), "20/11/2026, 05:18");
  EXPECT_EQ(inZone("UTC", morning + days(2), morning), "24/11/2026, 05:18");
}

TEST(RelativeDateText, GivesAShortDateForAnyOtherDay) {
  const auto of = [](const std::string& locale) {
    return relativeDateText(morning, morning + days(40), {.locale = locale, .timeZone = "UTC"});
  };
  EXPECT_EQ(of("en_US"), "11/22/26, 5:18\u00A0AM");
  EXPECT_EQ(of("de_DE"), "22.11.26, 05:18");
  EXPECT_EQ(of("ja_JP"), "2026/11/22 5:18");
}

TEST(RelativeDateText, SameTimeAYearAgoIsNotToday) {
  EXPECT_EQ(inZone("UTC", morning - days(365), morning), "22/11/2025, 05:18");
}

TEST(RelativeDateText, DayEndsAtMidnight) {
  const Moment midnight = sys_days(std::chrono::year(2026) / 11 / 22);
  EXPECT_EQ(inZone("UTC", midnight - seconds(1), midnight), "Yesterday, 23:59");
  EXPECT_EQ(inZone("UTC", midnight - seconds(1), midnight - seconds(1)), "Today, 23:59");
  EXPECT_EQ(inZone("UTC", midnight, midnight), "Today, 00:00");
  EXPECT_EQ(inZone("UTC", midnight, midnight - seconds(1)), "Tomorrow, 00:00");
}

TEST(RelativeDateText, MidnightIsThatOfTheZone) {
  const Moment late = sys_days(std::chrono::year(2026) / 11 / 22) + hours(23) + minutes(30);
  EXPECT_EQ(inZone("UTC", late, late + hours(1)), "Yesterday, 23:30");
  EXPECT_EQ(inZone("Europe/Berlin", late, late + hours(1)), "Today, 00:30");
  EXPECT_EQ(inZone("America/New_York", late, late + hours(1)), "Today, 18:30");
  EXPECT_EQ(inZone("Asia/Kathmandu", late, late), "Today, 05:15");
}

TEST(RelativeDateText, DayOfTwentyThreeHoursHasOneYesterday) {
  // Clocks in Berlin went from 2:00 to 3:00 on 29 March 2026.
  const Moment evening = sys_days(std::chrono::year(2026) / 3 / 28) + hours(22) + minutes(30);
  EXPECT_EQ(inZone("Europe/Berlin", evening, evening + hours(23)), "Yesterday, 23:30");
  EXPECT_EQ(inZone("Europe/Berlin", evening + minutes(45), evening + hours(23)), "Today, 00:15");
  const Moment gap = sys_days(std::chrono::year(2026) / 3 / 29) + hours(1);
  EXPECT_EQ(inZone("Europe/Berlin", gap - minutes(1), gap), "Today, 01:59");
  EXPECT_EQ(inZone("Europe/Berlin", gap, gap), "Today, 03:00");
}

TEST(RelativeDateText, DayOfTwentyFiveHoursIsOneDay) {
  // Clocks in Berlin went from 3:00 back to 2:00 on 25 October 2026.
  const Moment first = sys_days(std::chrono::year(2026) / 10 / 24) + hours(22) + minutes(5);
  EXPECT_EQ(inZone("Europe/Berlin", first, first + hours(24)), "Today, 00:05");
  EXPECT_EQ(inZone("Europe/Berlin", first, first + hours(25)), "Yesterday, 00:05");
}

TEST(RelativeDateText, ClockThatWasNeverSet) {
  const Moment beginning{};
  EXPECT_EQ(today("en_GB", beginning), "Today, 00:00");
  EXPECT_EQ(inZone("America/New_York", beginning, beginning), "Today, 19:00");
  EXPECT_EQ(inZone("UTC", morning, beginning), "22/11/2026, 05:18");
  EXPECT_EQ(inZone("UTC", beginning - hours(1), beginning), "Yesterday, 23:00");
}

TEST(RelativeDateText, FurthestMomentsHaveADate) {
  EXPECT_NE(inZone("UTC", Moment::max(), morning), "");
  EXPECT_NE(inZone("UTC", Moment::min(), Moment::max()), "");
}

TEST(RelativeDateText, UnknownZoneIsUtc) {
  EXPECT_EQ(inZone("Nowhere/Atlantis", morning, morning), "Today, 05:18");
}

TEST(RelativeDateText, UnknownLocaleIsEnglish) {
  for (const std::string& locale :
       {std::string("tlh"), std::string("xx_YY"), std::string(5000, 'x')}) {
    EXPECT_THAT(today(locale), testing::HasSubstr("oday, ")) << locale.substr(0, 8);
  }
}

/// Says the morning, and a moment eight hours earlier, on a machine of that zone. Ends the program,
/// because ICU looks only once which zone its machine has.
[[noreturn]] void sayOnMachineOf(const char* zone) {
  ::setenv("TZ", zone, 1);
  const DateHabits habits{.locale = "en_GB", .timeZone = ""};
  for (const Moment moment : {morning, morning - hours(8)}) {
    std::fprintf(stderr, "%s; ", relativeDateText(moment, morning, habits).c_str());
  }
  std::exit(0);
}

TEST(RelativeDateText, MachinesOwnZoneWhenNoneIsNamed) {
  EXPECT_EXIT(sayOnMachineOf("Asia/Kathmandu"), testing::ExitedWithCode(0),
              "^Today, 11:03; Today, 03:03; $");
  EXPECT_EXIT(sayOnMachineOf("America/New_York"), testing::ExitedWithCode(0),
              "^Today, 00:18; Yesterday, 16:18; $");
}

TEST(EndOfDay, IsTheNextMidnightInTheUsersZone) {
  const Moment midnight = sys_days(std::chrono::year(2026) / 11 / 23);
  EXPECT_EQ(endOfDay(morning, {.timeZone = "UTC"}), midnight);
  EXPECT_EQ(endOfDay(morning, {.timeZone = "Europe/Rome"}), midnight - hours(1));
  EXPECT_EQ(endOfDay(morning, {.timeZone = "America/Los_Angeles"}), midnight - hours(16));
  EXPECT_EQ(endOfDay(midnight, {.timeZone = "UTC"}), midnight + days(1)) << "it is of the next day";
  EXPECT_EQ(endOfDay(midnight - seconds(1), {.timeZone = "UTC"}), midnight);
}

TEST(EndOfDay, ADayMayHaveAnHourLessOrMore) {
  const Moment spring = sys_days(std::chrono::year(2026) / 3 / 28) + hours(23);
  EXPECT_EQ(endOfDay(spring, {.timeZone = "Europe/Rome"}), spring + hours(23));
  const Moment autumn = sys_days(std::chrono::year(2026) / 10 / 24) + hours(22);
  EXPECT_EQ(endOfDay(autumn, {.timeZone = "Europe/Rome"}), autumn + hours(25));
}

TEST(EndOfDay, WhereAClockGoesForwardAtMidnightItIsTheFirstHourThatThereIs) {
  // On 2018-11-04 clocks in this zone went from 00:00 to 01:00.
  const Moment change = sys_days(std::chrono::year(2018) / 11 / 4) + hours(3);
  EXPECT_EQ(endOfDay(change - hours(1), {.timeZone = "America/Sao_Paulo"}), change);
  EXPECT_EQ(endOfDay(change, {.timeZone = "America/Sao_Paulo"}), change + hours(23));
}

TEST(EndOfDay, TheTextOfADayChangesThenAndNotBefore) {
  for (const char* const zone : {"UTC", "Asia/Kolkata", "Pacific/Apia", "America/St_Johns"}) {
    const Moment end = endOfDay(morning, {.timeZone = zone});
    EXPECT_EQ(inZone(zone, morning, end - seconds(1)), inZone(zone, morning, morning)) << zone;
    EXPECT_NE(inZone(zone, morning, end), inZone(zone, morning, morning)) << zone;
  }
}

}  // namespace
}  // namespace lanternfold
