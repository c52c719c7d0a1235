#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ViewTree/ShortenedText.h"

namespace lanternfold {
namespace {

/// Every code point is one wide.
double widthOf(std::string_view measured) {
  std::size_t characters = 0;
  for (const char byte : measured) characters += (byte & 0xC0) != 0x80 ? 1U : 0U;
  return static_cast<double>(characters);
}

std::string shortened(std::string_view text, Truncation truncation, double width) {
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

TEST(ShortenedText, KeepsAFlagAFamilyAndASyllableWhole) {
  const std::string flag = "\U0001F1E9\U0001F1EA";
  const std::string family = "\U0001F469\u200D\U0001F467";
  const std::string syllable = "\u1112\u1161\u11AB";
  EXPECT_EQ(shortened("a" + flag + "bcd", Truncation::tail, 3), "a\u2026");
  EXPECT_EQ(shortened("a" + flag + "bcd", Truncation::tail, 4), "a" + flag + "\u2026");
  EXPECT_EQ(shortened("ab" + family, Truncation::tail, 4), "ab\u2026");
  EXPECT_EQ(shortened("a" + syllable + "b", Truncation::tail, 4), "a\u2026");
}

/// The lines, each behind where it begins.
std::vector<std::string> wrapped(std::string_view text, double width, std::size_t lineLimit,
                                 Truncation truncation = Truncation::tail) {
  std::vector<std::string> lines;
  for (const WrappedLine& line : wrappedText(text, truncation, width, lineLimit, widthOf)) {
    lines.push_back(std::to_string(line.start) + ':' + line.text);
  }
  return lines;
}

using Lines = std::vector<std::string>;

TEST(WrappedText, BreaksAtSpacesAndHyphensAndHidesTheSpaces) {
  EXPECT_EQ(wrapped("one two-three", 7, 3), (Lines{"0:one", "4:two-", "8:three"}));
  EXPECT_EQ(wrapped("one two-three", 8, 3), (Lines{"0:one two-", "8:three"}));
}

TEST(WrappedText, TakesAsMuchOnALineAsItHolds) {
  EXPECT_EQ(wrapped("a b c d e f", 5, 9), (Lines{"0:a b c", "6:d e f"}));
}

TEST(WrappedText, ShortensTheLastLine) {
  EXPECT_EQ(wrapped("one two three four", 7, 2), (Lines{"0:one two", "8:three \u2026"}));
  EXPECT_EQ(wrapped("one two three four", 7, 2, Truncation::middle),
            (Lines{"0:one two", "8:thr\u2026our"}));
}

TEST(WrappedText, BreaksAWordThatIsWiderThanALine) {
  EXPECT_EQ(wrapped("abcdefgh ij", 3, 9), (Lines{"0:abc", "3:def", "6:gh", "9:ij"}));
}

TEST(WrappedText, NeverTearsACharacterApart) {
  EXPECT_EQ(wrapped("ae\u0301z", 2, 9), (Lines{"0:a", "1:e\u0301", "4:z"}));
}

TEST(WrappedText, BreaksBetweenIdeographsButNotBeforeTheirFullStop) {
  EXPECT_EQ(wrapped("\u672A\u63A5\u7D9A\u3002", 3, 9), (Lines{"0:\u672A\u63A5", "6:\u7D9A\u3002"}));
}

TEST(WrappedText, IsOneLineWhereItFits) {
  EXPECT_EQ(wrapped("one two", 7, 3), (Lines{"0:one two"}));
  EXPECT_EQ(wrapped("", 7, 3), (Lines{"0:"}));
  EXPECT_EQ(wrapped("", 0, 3), (Lines{"0:"}));
}

TEST(WrappedText, VanishesWhereNothingFits) {
  EXPECT_EQ(wrapped("one two", 0, 3), (Lines{"0:"}));
  EXPECT_EQ(wrapped("one two", 0.5, 3), (Lines{"0:"}));
}

TEST(WrappedText, NeverShowsLessInMoreRoomOrMoreLines) {
  const std::string text = "The adapter en7 is gone, or cannot-be-read-now; supercalifragilistic.";
  const auto shown = [&](double width, std::size_t lineLimit) {
    const std::vector<WrappedLine> lines =
        wrappedText(text, Truncation::tail, width, lineLimit, widthOf);
    const WrappedLine& last = lines.back();
    return last.start + last.text.size() - (last.text.ends_with("\u2026") ? 3 : 0);
  };
  for (std::size_t lineLimit = 1; lineLimit < 8; ++lineLimit) {
    for (double width = 0.5; width < 80; width += 0.5) {
      ASSERT_GE(shown(width, lineLimit), shown(width - 0.5, lineLimit)) << width;
      ASSERT_GE(shown(width, lineLimit + 1), shown(width, lineLimit)) << width;
    }
  }
}

}  // namespace
}  // namespace lanternfold
