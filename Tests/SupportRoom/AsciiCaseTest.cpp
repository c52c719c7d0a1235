#include <string_view>

#include <gtest/gtest.h>

#include "Support/AsciiCase.h"

namespace lanternfold {
namespace {

using namespace std::string_view_literals;

TEST(AsciiCase, LowersLettersOnly) {
  EXPECT_EQ(asciiLowercased("AB:CD:EF:12:34:56"), "ab:cd:ef:12:34:56");
  EXPECT_EQ(asciiLowercased("@[`{AZaz"), "@[`{azaz");
  EXPECT_EQ(asciiLowercased(""), "");
}

TEST(AsciiCase, RaisesLettersOnly) {
  EXPECT_EQ(asciiUppercased("ab:cd:ef:12:34:56"), "AB:CD:EF:12:34:56");
  EXPECT_EQ(asciiUppercased("@[`{AZaz"), "@[`{AZAZ");
}

TEST(AsciiCase, LeavesBytesOutsideAsciiAlone) {
  EXPECT_EQ(asciiLowercased("\xC3\x84\xFF\0X"sv), "\xC3\x84\xFF\0x"sv);
  EXPECT_EQ(asciiUppercased("\xC3\xA4x"), "\xC3\xA4X");
}

}  // namespace
}  // namespace lanternfold
