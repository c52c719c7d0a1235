#include <gtest/gtest.h>

#include "Support/TextPlaceholders.h"

namespace lanternfold {
namespace {

TEST(TextPlaceholders, FillsTheArgumentIn) {
  EXPECT_EQ(fillPlaceholders("Connected via %@", {"Wi-Fi"}), "Connected via Wi-Fi");
  EXPECT_EQ(fillPlaceholders("%@ verbunden", {"WLAN"}), "WLAN verbunden");
  EXPECT_EQ(fillPlaceholders("%@", {""}), "");
}

TEST(TextPlaceholders, FillsSeveralInTheirOrder) {
  EXPECT_EQ(fillPlaceholders("%@ and %@", {"one", "two"}), "one and two");
  EXPECT_EQ(fillPlaceholders("%@%@", {"one", "two"}), "onetwo");
}

TEST(TextPlaceholders, LeavesPlaceholdersWithoutAnArgument) {
  EXPECT_EQ(fillPlaceholders("%@ and %@", {"one"}), "one and %@");
  EXPECT_EQ(fillPlaceholders("%@", {}), "%@");
}

TEST(TextPlaceholders, DropsArgumentsWithoutAPlaceholder) {
  EXPECT_EQ(fillPlaceholders("Connected", {"Wi-Fi"}), "Connected");
  EXPECT_EQ(fillPlaceholders("", {"Wi-Fi"}), "");
}

TEST(TextPlaceholders, TakesOtherPercentSignsAsTheyAre) {
  EXPECT_EQ(fillPlaceholders("100% %s %d %n %%@ %", {"Wi-Fi"}), "100% %s %d %n %Wi-Fi %");
}

TEST(TextPlaceholders, DoesNotLookIntoArguments) {
  EXPECT_EQ(fillPlaceholders("%@, %@", {"%@", "two"}), "%@, two");
}

}  // namespace
}  // namespace lanternfold
