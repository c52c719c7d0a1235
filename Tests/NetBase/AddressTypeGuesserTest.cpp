#include <string>

#include <gtest/gtest.h>

#include "NetBase/AddressTypeGuesser.h"

namespace lanternfold {
namespace {

using std::string_view_literals::operator""sv;

std::optional<AddressType> typeOf(std::string_view text) {
  return StandardAddressTypeGuesser().type(text);
}

TEST(AddressTypeGuesser, KnowsIPv4) {
  for (const auto text : {"192.168.1.1", "0.0.0.0", "255.255.255.255"}) {
    EXPECT_EQ(typeOf(text), AddressType::ipv4) << text;
  }
}

TEST(AddressTypeGuesser, KnowsIPv6) {
  for (const auto text : {"::1", "::", "2001:db8::35", "::ffff:192.0.2.1", "FE80::A"}) {
    EXPECT_EQ(typeOf(text), AddressType::ipv6) << text;
  }
}

TEST(AddressTypeGuesser, TakesEveryOtherTextForAHostname) {
  for (const std::string_view text :
       {"example-host", "www.example.com", "1.2.3", "192.0.2.4.5", "256.1.1.1", "0192.0.2.4", "",
        "host_name", "m\u00FCnchen.example", "-host", "..", "a\tb", "\xFF\xFE", "192.0.2.4\n"}) {
    EXPECT_EQ(typeOf(text), AddressType::hostname) << text;
  }
  EXPECT_EQ(typeOf(std::string(1'000'000, 'a')), AddressType::hostname);
}

TEST(AddressTypeGuesser, TakesNoTextWithAnExcludedCharacter) {
  for (const auto text : {"a b", " ", "a/b", "a:b", "a&b", "a%b", "a?b", "192.168.1.1/24", "[::1]",
                          "fe80::1%eth0", "http://example.com", "::1 ", "1::2::3"}) {
    EXPECT_EQ(typeOf(text), std::nullopt) << text;
  }
}

// The C library would stop reading there.
TEST(AddressTypeGuesser, ReadsBeyondAZeroByte) {
  EXPECT_EQ(typeOf("192.168.1.1\0x"sv), AddressType::hostname);
  EXPECT_EQ(typeOf("::1\0"sv), std::nullopt);
  EXPECT_EQ(typeOf("a\0/"sv), std::nullopt);
}

}  // namespace
}  // namespace lanternfold
