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

std::string shortened(std::string_view text, Truncation truncation, double width) {
  const auto widthOf = [](std::string_view measured) {
    std::size_t characters = 0;
    for (const char byte : measured) characters += (byte & 0xC0) != 0x80 ? 1U : 0U;
    return static_cast<double>(characters);
  };
  return shortenedText(text, truncation, width, widthOf);
}

TEST(ShortenedText, IsTheTextWhereItFits) {
  EXPECT_EQ(shortened("adapter", Truncation::tail, 7), "adapter");
}

TEST(ShortenedText, EndsInAnEllipsis) {
  EXPECT_EQ(shortened("Ethernet Adapter", Truncation::tail, 9), "Ethernet\u2026");
}

TEST(ShortenedText, KeepsBothEndsWhenShortenedInTheMiddle) {
  EXPECT_EQ(shortened("ab:cd:ef:12:34:57", Truncation::middle, 9), "ab:c\u20264:57");
  EXPECT_EQ(shortened("ab:cd:ef:12:34:57", Truncation::middle, 8), "ab:c\u2026:57");
}

TEST(ShortenedText, VanishesWhereNotEvenTheEllipsisFits) {
  EXPECT_EQ(shortened("abc", Truncation::tail, 0.5), "");
  EXPECT_EQ(shortened("abc", Truncation::tail, 1), "\u2026");
}

TEST(ShortenedText, NeverTearsACharacterApart) {
  EXPECT_EQ(shortened("\u00e9\u00e9\u00e9\u00e9", Truncation::tail, 3), "\u00e9\u00e9\u2026");
  // A letter and the accent that combines with it go or stay together.
  EXPECT_EQ(shortened("ae\u0301z", Truncation::tail, 3), "a\u2026");
}

TEST(ShortenedText, NeverShowsLessInMoreRoom) {
  for (const Truncation truncation : {Truncation::middle, Truncation::tail}) {
    std::size_t before = 0;
    for (double width = 0; width < 20; width += 0.5) {
      const std::size_t now = shortened("ab:cd:ef:12:34:57", truncation, width).size();
      // The ellipsis has three bytes, which the last character that takes its place has not.
      EXPECT_GE(now + 2, before) << width;
      before = now;
    }
  }
}

}  // namespace
}  // namespace lanternfold
