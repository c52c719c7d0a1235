#include <cstdlib>
#include <ctime>

#include <gtest/gtest.h>

#include "CommandLine/DateText.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using std::chrono::sys_days;
using std::chrono::year;

constexpr auto newYear2024 = sys_days(year(2024) / 1 / 1);

TEST(LocalDateText, FollowsTheTimeZoneOfTheEnvironment) {
  ::setenv("TZ", "XYZ-5:30", 1);
  ::tzset();
  EXPECT_EQ(localDateText(newYear2024 + 999ms), "2024-01-01 05:30:00");
  ::unsetenv("TZ");
  ::tzset();
}

}  // namespace
}  // namespace lanternfold
