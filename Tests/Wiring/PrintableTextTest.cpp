#include <gtest/gtest.h>

#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

TEST(PrintableText, OrdinaryTextStaysAsItIs) {
  EXPECT_EQ(printable("en0 Grüße 家のネット 🛜"), "en0 Grüße 家のネット 🛜");
}

TEST(PrintableText, AnEscapeSequenceInAnInterfaceNameIsShownNotObeyed) {
  EXPECT_EQ(printable("en\x1b[31m0"), "en\\x1b[31m0");
}

TEST(PrintableText, LineBreaksTabsAndDeleteAreEscaped) {
  EXPECT_EQ(printable("a\nb\tc\x7f"), "a\\x0ab\\x09c\\x7f");
}

TEST(PrintableText, AZeroByteIsEscapedAndEndsNothing) {
  EXPECT_EQ(printable(std::string_view("a\0b", 3)), "a\\x00b");
}

TEST(PrintableText, ControlCharactersBeyondAsciiAreEscaped) {
  EXPECT_EQ(printable("a\xc2\x9b"
                      "31m"),
            "a\\xc2\\x9b31m");
}

TEST(PrintableText, MarksThatTurnTheWritingDirectionAreEscaped) {
  EXPECT_EQ(printable("a\u202Eb"), "a\\xe2\\x80\\xaeb");
}

TEST(PrintableText, InvalidBytesAreEscapedOneByOne) {
  EXPECT_EQ(printable("a\xff\xc3(\xe2\x82"), "a\\xff\\xc3(\\xe2\\x82");
  EXPECT_EQ(printable("\xc0\xaf"), "\\xc0\\xaf") << "an overlong encoding";
  EXPECT_EQ(printable("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "a surrogate";
}

TEST(TerminalWidth, CountsColumnsNotBytes) {
  EXPECT_EQ(terminalWidth(""), 0U);
  EXPECT_EQ(terminalWidth("en0"), 3U);
  EXPECT_EQ(terminalWidth("Grüße"), 5U);
  EXPECT_EQ(terminalWidth("家"), 2U);
  EXPECT_EQ(terminalWidth("e\u0301"), 1U) << "a combining mark takes no column";
}

TEST(PrintableText, QuotedTextIsCutAfter64CharactersOfAnyLength) {
  EXPECT_EQ(inQuotes(""), "\"\"");
  EXPECT_EQ(inQuotes(std::string(64, 'a')), '"' + std::string(64, 'a') + '"');
  EXPECT_EQ(inQuotes(std::string(65, 'a')), '"' + std::string(64, 'a') + "\u2026\"");
  EXPECT_EQ(inQuotes("\x1b\xff"), "\"\\x1b\\xff\"");
  std::string wide;
  for (int count = 0; count < 65; ++count) wide += "家";
  EXPECT_EQ(inQuotes(wide), '"' + wide.substr(0, 64 * 3) + "\u2026\"");
}

}  // namespace
}  // namespace lanternfold
