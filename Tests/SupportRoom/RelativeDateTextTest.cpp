#include <gtest/gtest.h>

#include "Support/RelativeDateText.h"

namespace lanternfold {
namespace {

TEST(RelativeDateText, SaysTodayAndYesterday) {
  const auto now = std::chrono::system_clock::now();
  EXPECT_THAT(relativeDateText(now), testing::StartsWith("Today, "));
  EXPECT_THAT(relativeDateText(now - std::chrono::hours(24)), testing::StartsWith("Yesterday, "));
}

TEST(RelativeDateText, GivesAShortDateForAnyOtherDay) {
  const auto newYear =
      std::chrono::sys_days(std::chrono::year(2001) / 1 / 1) + std::chrono::hours(12);
  EXPECT_THAT(relativeDateText(newYear), testing::MatchesRegex("1/1/0?1, .+"));
}

}  // namespace
}  // namespace lanternfold
