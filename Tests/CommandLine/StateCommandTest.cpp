#include <gtest/gtest.h>

#include "CommandLine/Commands/StateCommand.h"

namespace lanternfold {
namespace {

std::string failureOf(std::string_view names) {
  const auto categories = parseCategories(names);
  if (categories) return "understood";
  EXPECT_EQ(categories.error().status, ExitStatus::badArguments);
  return categories.error().sentence;
}

TEST(ParseCategories, UnderstandsEveryCategoryThatCanBeResolved) {
  EXPECT_EQ(parseCategories("other"), NetworkSourceCategory::other());
  EXPECT_EQ(parseCategories("cellular"), NetworkSourceCategory::cellular());
  EXPECT_EQ(parseCategories("internet"), NetworkSourceCategory::internet());
  EXPECT_EQ(parseCategories("other,cellular"), NetworkSourceCategory(12));
  EXPECT_EQ(parseCategories("wlan"), NetworkSourceCategory::wlan());
  EXPECT_EQ(parseCategories("internet,other,cellular"), NetworkSourceCategory(13));
  EXPECT_EQ(parseCategories("internet,wlan,cellular,other"), NetworkSourceCategory::all());
  EXPECT_EQ(parseCategories("other,other"), NetworkSourceCategory::other());
}

TEST(ParseCategories, RefusesWhatItDoesNotKnow) {
  EXPECT_EQ(failureOf("wifi"),
            "unknown category \"wifi\"; use internet, wlan, cellular or other, separated by "
            "commas");
  EXPECT_THAT(failureOf(""), testing::StartsWith("unknown category \"\""));
  EXPECT_THAT(failureOf("other,"), testing::StartsWith("unknown category \"\""));
  EXPECT_THAT(failureOf("Other"), testing::StartsWith("unknown category \"Other\""));
}

}  // namespace
}  // namespace lanternfold
