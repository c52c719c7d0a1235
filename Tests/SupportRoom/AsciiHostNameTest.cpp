#include <string>

#include <gtest/gtest.h>

#include "Support/AsciiHostName.h"

namespace lanternfold {
namespace {

TEST(AsciiHostName, LeavesAsciiAsItIs) {
  for (const std::string& name : {std::string("example.com"), std::string("EXAMPLE"), std::string(),
                                  std::string("host_name.."), std::string("a\0b", 3),
                                  std::string("xn--mnchen-3ya.example"), std::string(5000, 'a')}) {
    EXPECT_EQ(asciiHostName(name), name);
  }
}

TEST(AsciiHostName, WritesOtherLettersAsPunycode) {
  EXPECT_EQ(asciiHostName("m\u00FCnchen.example"), "xn--mnchen-3ya.example");
  EXPECT_EQ(asciiHostName("M\u00DCNCHEN.Example"), "xn--mnchen-3ya.example");
  EXPECT_EQ(asciiHostName("fa\u00DF.example"), "xn--fa-hia.example");
  EXPECT_EQ(asciiHostName("\u4F8B\u3048.example"), "xn--r8jz45g.example");
}

TEST(AsciiHostName, IsNoneForWhatCannotBeAName) {
  EXPECT_EQ(asciiHostName("\xFF\xFE.example"), std::nullopt);
  EXPECT_EQ(asciiHostName("\u00FC\u2028.example"), std::nullopt);
  EXPECT_EQ(asciiHostName("m\u00FCnchen." + std::string(5000, 'a')), std::nullopt);
  EXPECT_EQ(asciiHostName(std::string("\u00FC") + std::string(80, 'a')), std::nullopt);
}

}  // namespace
}  // namespace lanternfold
