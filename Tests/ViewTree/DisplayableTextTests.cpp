#include <string>

#include <gtest/gtest.h>

#include "ViewTree/DisplayableText.h"

namespace lanternfold {
namespace {

TEST(DisplayableText, KeepsValidTextOfEveryLength) {
  EXPECT_EQ(displayableText("a\u00e9\u20ac\U0001F680"), "a\u00e9\u20ac\U0001F680");
  EXPECT_EQ(displayableText(""), "");
}

TEST(DisplayableText, ReplacesEachByteThatIsNoCharacter) {
  EXPECT_EQ(displayableText("a\xff\xfe"
                            "b"),
            "a\uFFFD\uFFFDb");
  EXPECT_EQ(displayableText("\xe2\x82"), "\uFFFD\uFFFD");                      // cut short
  EXPECT_EQ(displayableText("\xc0\xaf"), "\uFFFD\uFFFD");                      // overlong
  EXPECT_EQ(displayableText("\xe0\x80\xaf"), "\uFFFD\uFFFD\uFFFD");            // overlong
  EXPECT_EQ(displayableText("\xed\xa0\x80"), "\uFFFD\uFFFD\uFFFD");            // surrogate
  EXPECT_EQ(displayableText("\xf4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");  // above U+10FFFF
}

TEST(DisplayableText, IsOneLine) {
  EXPECT_EQ(displayableText("a\nb\tc\rd\u2028e"), "a b c d e");
  EXPECT_EQ(displayableText(std::string_view("a\0b", 3)), "a b");
}

TEST(DisplayableText, DropsDirectionalOverrides) {
  EXPECT_EQ(displayableText("a\u202Eb\u2066c"), "abc");
}

TEST(DisplayableText, IsBounded) {
  const std::string shown = displayableText(std::string(1'000'000, 'x'));
  EXPECT_EQ(shown, std::string(maximumShownCharacters, 'x') + "\u2026");
}

}  // namespace
}  // namespace lanternfold
