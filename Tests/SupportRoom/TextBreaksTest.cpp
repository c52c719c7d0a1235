#include <cstddef>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Support/TextBreaks.h"

namespace lanternfold {
namespace {

using Offsets = std::vector<std::size_t>;

TEST(CharacterBreaks, StandBetweenCharactersAsAReaderSeesThem) {
  EXPECT_EQ(characterBreaks("ab"), (Offsets{0, 1, 2}));
  EXPECT_EQ(characterBreaks("\u00e9x"), (Offsets{0, 2, 3}));
  EXPECT_EQ(characterBreaks("e\u0301x"), (Offsets{0, 3, 4}));
  EXPECT_EQ(characterBreaks("\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7"), (Offsets{0, 8, 16}));
  EXPECT_EQ(characterBreaks("\U0001F469\u200D\U0001F467!"), (Offsets{0, 11, 12}));
  EXPECT_EQ(characterBreaks("\u0BA8\u0BBF"), (Offsets{0, 6}));
}

TEST(CharacterBreaks, OfNothingAreItsBeginning) { EXPECT_EQ(characterBreaks(""), Offsets{0}); }

TEST(LineBreaks, StandBehindSpacesAndHyphens) {
  EXPECT_EQ(lineBreaks("one  two-three"), (Offsets{0, 5, 9, 14}));
}

TEST(LineBreaks, KeepWhatBelongsTogether) {
  EXPECT_EQ(lineBreaks("1,234.5"), (Offsets{0, 7}));
  EXPECT_EQ(lineBreaks("a\u00A0b"), (Offsets{0, 4}));
}

TEST(LineBreaks, StandBetweenIdeographsAndWordsWithoutSpaces) {
  EXPECT_EQ(lineBreaks("\u672A\u63A5\u7D9A\u3002"), (Offsets{0, 3, 6, 12}));
  EXPECT_EQ(lineBreaks("\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35\u0E04\u0E23\u0E31\u0E1A"),
            (Offsets{0, 18, 30}));
}

TEST(LineBreaks, OfNothingAreItsBeginning) { EXPECT_EQ(lineBreaks(""), Offsets{0}); }

TEST(LineBreaks, OfBytesThatAreNoTextStayWithinIt) {
  for (const std::string_view bytes : {"\xff\xfe", "a\xc3", "\xe2\x82", "\xf0\x9f"}) {
    const Offsets offsets = characterBreaks(bytes);
    EXPECT_EQ(offsets.front(), 0U);
    EXPECT_EQ(offsets.back(), bytes.size());
  }
}

}  // namespace
}  // namespace lanternfold
