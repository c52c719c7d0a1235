#include <string>

#include <gtest/gtest.h>

#include "Support/WholeTextPattern.h"

namespace lanternfold {
namespace {

TEST(WholeTextPattern, MatchesAllOfATextOrNothing) {
  const WholeTextPattern letters("[a-z]+");
  EXPECT_TRUE(letters.matches("abc"));
  EXPECT_FALSE(letters.matches("abc1"));
  EXPECT_FALSE(letters.matches("1abc"));
  EXPECT_FALSE(letters.matches("abc\n"));
  EXPECT_FALSE(letters.matches(""));
}

TEST(WholeTextPattern, ReadsUtf8) {
  const WholeTextPattern letters("\\p{Letter}{3}");
  EXPECT_TRUE(letters.matches("\u00FC\u00DF\u00E9"));
  EXPECT_FALSE(letters.matches("\u00FC\u00DF"));
  EXPECT_FALSE(letters.matches("\xFF\xFE\xFD"));
}

TEST(WholeTextPattern, TakesLongTexts) {
  EXPECT_TRUE(WholeTextPattern("[a-z]*").matches(std::string(2'000'000, 'a')));
}

TEST(WholeTextPattern, ThatDoesNotCompileStopsTheProgram) {
  EXPECT_DEATH(WholeTextPattern("(["), "does not compile");
}

}  // namespace
}  // namespace lanternfold
