#include <gtest/gtest.h>

#include "Support/Rfc3339Text.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using std::chrono::sys_days;
using std::chrono::year;

constexpr auto newYear2024 = sys_days(year(2024) / 1 / 1);

TEST(Rfc3339Text, HasThreeDigitsOfASecondAndNoTimeZone) {
  EXPECT_EQ(rfc3339Text(newYear2024), "2024-01-01T00:00:00.000Z");
  EXPECT_EQ(rfc3339Text(newYear2024 + 7ms), "2024-01-01T00:00:00.007Z");
  EXPECT_EQ(rfc3339Text(newYear2024 + 13h + 4min + 5s + 120ms), "2024-01-01T13:04:05.120Z");
}

TEST(Rfc3339Text, CutsWhatIsLessThanAMillisecond) {
  EXPECT_EQ(rfc3339Text(newYear2024 - 1ns), "2023-12-31T23:59:59.999Z");
}

TEST(Rfc3339Text, KnowsTimesBefore1970) {
  EXPECT_EQ(rfc3339Text(sys_days(year(1969) / 12 / 31) + 23h + 250ms), "1969-12-31T23:00:00.250Z");
}

TEST(MomentOfRfc3339Text, IsTheOneThatWasWritten) {
  for (const auto moment : {newYear2024 + 0ms, newYear2024 + 13h + 4min + 5s + 120ms,
                            sys_days(year(1970) / 1 / 1) + 0ms,
                            sys_days(year(2261) / 12 / 31) + 23h + 59min + 59s + 999ms}) {
    EXPECT_EQ(momentOfRfc3339Text(rfc3339Text(moment)), moment);
  }
}

TEST(MomentOfRfc3339Text, HasAsManyDigitsOfASecondAsTheClock) {
  EXPECT_EQ(momentOfRfc3339Text("2024-01-01T00:00:00Z"), newYear2024);
  EXPECT_EQ(momentOfRfc3339Text("2024-01-01T00:00:00.5Z"), newYear2024 + 500ms);
  EXPECT_EQ(momentOfRfc3339Text("2024-01-01T00:00:00.000000007Z"), newYear2024 + 7ns);
}

TEST(MomentOfRfc3339Text, KnowsTimeZones) {
  EXPECT_EQ(momentOfRfc3339Text("2024-01-01T01:30:00+01:30"), newYear2024);
  EXPECT_EQ(momentOfRfc3339Text("2023-12-31t19:00:00-05:00"), newYear2024);
  EXPECT_EQ(momentOfRfc3339Text("2024-01-01T00:00:00z"), newYear2024);
}

TEST(MomentOfRfc3339Text, IsNoneOfAnyOtherText) {
  for (const std::string_view text : {"",
                                      "Z",
                                      "2024",
                                      "2024-01-01",
                                      "2024-01-01T00:00:00",
                                      "2024-01-01 00:00:00Z",
                                      "2024-13-01T00:00:00Z",
                                      "2023-02-29T00:00:00Z",
                                      "2024-00-01T00:00:00Z",
                                      "2024-01-01T24:00:00Z",
                                      "2024-01-01T00:60:00Z",
                                      "2024-01-01T00:00:60Z",
                                      "2024-01-01T00:00:00.Z",
                                      "2024-01-01T00:00:00.0000000001Z",
                                      "2024-01-01T00:00:00.-5Z",
                                      "2024-01-01T00:00:00Z ",
                                      " 2024-01-01T00:00:00Z",
                                      "2024-01-01T00:00:00+0100",
                                      "2024-01-01T00:00:00+24:00",
                                      "2024-1-1T0:0:0Z",
                                      "+024-01-01T00:00:00Z",
                                      "-024-01-01T00:00:00Z",
                                      "1969-12-31T23:59:59Z",
                                      "2262-01-01T00:00:00Z",
                                      "1970-01-01T00:00:00+00:01",
                                      "2261-12-31T23:59:59-00:01",
                                      "9999-12-31T23:59:59Z"}) {
    EXPECT_EQ(momentOfRfc3339Text(text), std::nullopt) << text;
  }
}

TEST(MomentOfRfc3339Text, IsNoneOfATextThatIsCut) {
  const std::string whole = "2024-01-01T00:00:00.120+01:30";
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_EQ(momentOfRfc3339Text(whole.substr(0, size)), std::nullopt) << size;
  }
}

}  // namespace
}  // namespace lanternfold
