#include <string>

#include <gtest/gtest.h>

#include "NetBase/HostnameValidator.h"

namespace lanternfold {
namespace {

const HostnameValidator validator;

TEST(HostnameValidator, TakesLabelsOfLettersDigitsAndHyphens) {
  for (const std::string_view name : {"example", "a", "7", "www.example.com", "3com.example",
                                      "xn--mnchen-3ya.example", "A-b-C.d--e"}) {
    EXPECT_TRUE(validator.validate(name)) << name;
  }
}

TEST(HostnameValidator, TakesLabelsThatEndWithAHyphen) {
  EXPECT_TRUE(validator.validate("host-.example"));
  EXPECT_TRUE(validator.validate("host.example-"));
}

TEST(HostnameValidator, HasNoGreatestLength) {
  EXPECT_TRUE(validator.validate(std::string(64, 'a')));
  EXPECT_TRUE(validator.validate(std::string(1'000'000, 'a')));
  std::string labels = "a";
  for (int count = 0; count < 200'000; ++count) labels += ".b";
  EXPECT_TRUE(validator.validate(labels));
}

TEST(HostnameValidator, RefusesLabelsThatBeginWithAHyphen) {
  EXPECT_FALSE(validator.validate("-host"));
  EXPECT_FALSE(validator.validate("www.-host.example"));
  EXPECT_FALSE(validator.validate("-"));
}

TEST(HostnameValidator, RefusesEmptyNamesAndLabels) {
  for (const std::string_view name : {"", ".", "..", "a..b", ".a", "a."}) {
    EXPECT_FALSE(validator.validate(name)) << name;
  }
}

TEST(HostnameValidator, RefusesEveryOtherCharacter) {
  for (int character = 0; character < 256; ++character) {
    const auto byte = static_cast<char>(character);
    const bool isAllowed = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= '0' && byte <= '9') || byte == '-' || byte == '.';
    EXPECT_EQ(validator.validate(std::string("a") + byte + "b"), isAllowed) << character;
  }
  EXPECT_FALSE(validator.validate("m\u00FCnchen"));
  EXPECT_FALSE(validator.validate("host_name"));
}

// An expression's end is also in front of a last line break.
TEST(HostnameValidator, RefusesALineBreakAtTheEnd) {
  EXPECT_FALSE(validator.validate("host\n"));
  EXPECT_FALSE(validator.validate("host\r\n"));
  EXPECT_FALSE(validator.validate("host\u2028"));
}

TEST(HostnameValidator, IsAValue) {
  const HostnameValidator copy = validator;
  EXPECT_TRUE(copy.validate("host"));
  EXPECT_FALSE(copy.validate("-host"));
}

}  // namespace
}  // namespace lanternfold
