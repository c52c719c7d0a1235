#include <gtest/gtest.h>

#include "WidgetService/QuotedText.h"

namespace lanternfold {
namespace {

TEST(BeginningOf, NeverTearsACharacter) {
  EXPECT_EQ(beginningOf("a€b", 0), "");
  EXPECT_EQ(beginningOf("a€b", 1), "a");
  EXPECT_EQ(beginningOf("a€b", 3), "a");
  EXPECT_EQ(beginningOf("a€b", 4), "a€");
  EXPECT_EQ(beginningOf("a€b", 5), "a€b");
  EXPECT_EQ(beginningOf("a€b", 100), "a€b");
  EXPECT_EQ(beginningOf("\xE2\x82", 1), "\xE2");
}

TEST(QuotedText, IsTheTextInQuotes) {
  EXPECT_EQ(quotedText("huge"), "\"huge\"");
  EXPECT_EQ(quotedText(""), "\"\"");
}

TEST(QuotedText, IsCutBetweenCharacters) {
  EXPECT_EQ(quotedText(std::string(64, 'x')), '"' + std::string(64, 'x') + '"');
  EXPECT_EQ(quotedText(std::string(65, 'x')), '"' + std::string(64, 'x') + "…\"");
  EXPECT_EQ(quotedText(std::string(63, 'x') + "€"), '"' + std::string(63, 'x') + "…\"");
  EXPECT_EQ(quotedText(std::string(61, 'x') + "€"), '"' + std::string(61, 'x') + "€\"");
}

TEST(QuotedText, EscapesWhatCannotBeShown) {
  EXPECT_EQ(quotedText("a\nb\xFF"), "\"a\\x0ab\\xff\"");
  EXPECT_EQ(quotedText("\u202Eevil"), "\"\\xe2\\x80\\xaeevil\"");
}

TEST(QuotedText, IsSmallWhateverItQuotes) {
  EXPECT_LT(quotedText(std::string(1'000'000, '\xFF')).size(), 300U);
  EXPECT_LT(quotedText(std::string(1'000'000, '\0')).size(), 300U);
}

}  // namespace
}  // namespace lanternfold
