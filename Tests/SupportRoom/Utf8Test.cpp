#include <string>

#include <gtest/gtest.h>

#include "Support/Utf8.h"

namespace lanternfold {
namespace {

TEST(Utf8, TextThatIsShortEnoughStaysWhole) {
  EXPECT_EQ(cutBetweenCharacters("", 0), "");
  EXPECT_EQ(cutBetweenCharacters("", 5), "");
  EXPECT_EQ(cutBetweenCharacters("caf\u00E9", 5), "caf\u00E9");
  EXPECT_EQ(cutBetweenCharacters("caf\u00E9", 6), "caf\u00E9");
}

TEST(Utf8, CutNeverFallsWithinACharacter) {
  const std::string text = "a\u00E9\u20AC\U0001F680z";  // of 1, 2, 3, 4 bytes and 1
  const std::string_view cuts[] = {
      "",
      "a",
      "a",
      "a\u00E9",
      "a\u00E9",
      "a\u00E9",
      "a\u00E9\u20AC",
      "a\u00E9\u20AC",
      "a\u00E9\u20AC",
      "a\u00E9\u20AC",
      "a\u00E9\u20AC\U0001F680",
      text,
  };
  for (std::size_t longest = 0; longest < std::size(cuts); ++longest) {
    EXPECT_EQ(cutBetweenCharacters(text, longest), cuts[longest]) << longest;
  }
}

TEST(Utf8, BytesThatBeginNoCharacterAreCutToo) {
  EXPECT_EQ(cutBetweenCharacters("\x80\x80\x80", 2), "");
  EXPECT_EQ(cutBetweenCharacters("\xFF\xFF\xFF", 2), "\xFF\xFF");
}

TEST(Utf8, CountsCharactersAndNotBytes) {
  EXPECT_EQ(characterCount(""), 0U);
  EXPECT_EQ(characterCount("02:00:00:00:00:01"), 17U);
  EXPECT_EQ(characterCount("a\u00E9\u20AC\U0001F680z"), 5U);
  EXPECT_EQ(characterCount("e\u0301"), 2U);
}

TEST(Utf8, CountsOnlyWhatBegins) {
  EXPECT_EQ(characterCount("\x80\x80"), 0U);
  EXPECT_EQ(characterCount("\xFF\xFF"), 2U);
  EXPECT_EQ(characterCount("\xE2\x82"), 1U);
}

}  // namespace
}  // namespace lanternfold
