#include <gtest/gtest.h>

#include "Rendering/IsolatedAddresses.h"

namespace lanternfold {
namespace {

TEST(IsolatedAddresses, AreThoseWithColonsBesideLettersThatRunToTheLeft) {
  EXPECT_EQ(isolatedAddresses("\u05E9 2001:db8::1"), "\u05E9 \u20662001:db8::1\u2069");
  EXPECT_EQ(isolatedAddresses("ab:cd:ef:12:34:56  \u05E9"),
            "\u2066ab:cd:ef:12:34:56\u2069  \u05E9");
  EXPECT_EQ(isolatedAddresses("\u05E9 ::ffff:192.0.2.1/96 \u05E9"),
            "\u05E9 \u2066::ffff:192.0.2.1/96\u2069 \u05E9");
}

TEST(IsolatedAddresses, LeaveOtherTextsAsTheyAre) {
  for (const char* text : {"", " ", "2001:db8::1", "\u00E9 2001:db8::1", "\u05E9 10:30",
                           "\u05E9 192.168.0.1/24", "\u05E9 :: :", "\u05E9 Wi:Fi:x", "\u05E9"}) {
    EXPECT_EQ(isolatedAddresses(text), text);
  }
}

}  // namespace
}  // namespace lanternfold
