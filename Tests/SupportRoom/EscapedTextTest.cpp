#include <gtest/gtest.h>

#include "Support/EscapedText.h"

namespace lanternfold {
namespace {

TEST(EscapedText, WhatCanBeShownStaysAsItIs) {
  for (const std::string text :
       {"", "en0 Grüße 家のネット 🛜", "\U0001F468\u200D\U0001F469", "<b>&amp;\"'", "a\\x41",
        "\u00a0", "\u05e9\u05dc\u05d5\u05dd", "\u0633\u0644\u0627\u0645", "\u200b\ufeff\uffff"}) {
    EXPECT_EQ(escapedText(text), text);
  }
}

TEST(EscapedText, MarksThatTurnTheWritingDirectionAreEscapedEachOfThem) {
  const std::pair<std::string, std::string> cases[] = {
      {"\u061C", "\\xd8\\x9c"},      {"\u200E", "\\xe2\\x80\\x8e"}, {"\u200F", "\\xe2\\x80\\x8f"},
      {"\u202A", "\\xe2\\x80\\xaa"}, {"\u202B", "\\xe2\\x80\\xab"}, {"\u202C", "\\xe2\\x80\\xac"},
      {"\u202D", "\\xe2\\x80\\xad"}, {"\u202E", "\\xe2\\x80\\xae"}, {"\u2066", "\\xe2\\x81\\xa6"},
      {"\u2067", "\\xe2\\x81\\xa7"}, {"\u2068", "\\xe2\\x81\\xa8"}, {"\u2069", "\\xe2\\x81\\xa9"}};
  for (const auto& [mark, text] : cases) {
    EXPECT_EQ(escapedText("a" + mark + "b"), "a" + text + "b");
  }
}

TEST(EscapedText, ControlCharactersAndLineEndsAreEscaped) {
  EXPECT_EQ(escapedText(std::string_view("a\0b", 3)), "a\\x00b");
  EXPECT_EQ(escapedText("\x1b[31m\n\x7f"), "\\x1b[31m\\x0a\\x7f");
  EXPECT_EQ(escapedText("\u0085\u2028\u2029"), "\\xc2\\x85\\xe2\\x80\\xa8\\xe2\\x80\\xa9");
}

TEST(EscapedText, BytesThatAreNoCharacterAreEscapedOneByOne) {
  EXPECT_EQ(escapedText("\xff\xc3(\xe2\x82"), "\\xff\\xc3(\\xe2\\x82");
  EXPECT_EQ(escapedText("\xc0\xaf"), "\\xc0\\xaf") << "an overlong encoding";
  EXPECT_EQ(escapedText("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "a surrogate";
  EXPECT_EQ(escapedText("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "beyond the last one";
}

TEST(EscapedText, TheFirstCharacterIsAsLongAsItIs) {
  EXPECT_EQ(firstCharacter("家a").bytes, "家");
  EXPECT_EQ(firstCharacter("家a").codePoint, U'家');
  EXPECT_EQ(firstCharacter("🛜").codePoint, U'🛜');
  EXPECT_TRUE(firstCharacter(std::string_view("\0a", 2)).isValid);
  EXPECT_EQ(firstCharacter("\xe2\x82").bytes, "\xe2");
  EXPECT_FALSE(firstCharacter("\xe2\x82").isValid);
}

TEST(EscapedTextDeathTest, AnEmptyTextHasNoFirstCharacter) {
  EXPECT_DEATH(static_cast<void>(firstCharacter("")), "empty text");
}

}  // namespace
}  // namespace lanternfold
