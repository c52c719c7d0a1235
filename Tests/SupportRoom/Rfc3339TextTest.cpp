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

}  // namespace
}  // namespace lanternfold
