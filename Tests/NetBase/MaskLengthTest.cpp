#include <gtest/gtest.h>

#include "NetBase/SNUtils.h"

namespace lanternfold {
namespace {

TEST(IPv4MaskLength, Of255_255_255_0Is24) {
  EXPECT_EQ(SNUtils::ipv4masklen({255, 255, 255, 0}), 24);
}

TEST(IPv4MaskLength, OfAllOnesIs32) { EXPECT_EQ(SNUtils::ipv4masklen({255, 255, 255, 255}), 32); }

TEST(IPv4MaskLength, OfZeroIs0) { EXPECT_EQ(SNUtils::ipv4masklen({0, 0, 0, 0}), 0); }

TEST(IPv4MaskLength, Of255_255_254_0Is23) {
  EXPECT_EQ(SNUtils::ipv4masklen({255, 255, 254, 0}), 23);
}

TEST(IPv4MaskLength, OfTheNonContiguous255_0_255_0Is8) {
  EXPECT_EQ(SNUtils::ipv4masklen({255, 0, 255, 0}), 8);
}

TEST(IPv4MaskLength, OfAByteWithAHoleCountsToItsLastOne) {
  EXPECT_EQ(SNUtils::ipv4masklen({0xA0, 0, 0, 0}), 3);
  EXPECT_EQ(SNUtils::ipv4masklen({255, 0x01, 0, 0}), 16);
}

TEST(IPv4MaskLength, OfEveryContiguousMaskIsItsLength) {
  for (unsigned length = 0; length <= 32; ++length) {
    const std::uint32_t bits = length == 0 ? 0U : ~0U << (32U - length);
    const IPv4Bytes mask{static_cast<std::uint8_t>(bits >> 24U),
                         static_cast<std::uint8_t>(bits >> 16U),
                         static_cast<std::uint8_t>(bits >> 8U), static_cast<std::uint8_t>(bits)};
    EXPECT_EQ(SNUtils::ipv4masklen(mask), length);
  }
}

TEST(IPv6MaskLength, OfFourGroupsOfOnesIs64) {
  EXPECT_EQ(SNUtils::ipv6masklen({255, 255, 255, 255, 255, 255, 255, 255}), 64);
}

TEST(IPv6MaskLength, OfAllOnesIs128) {
  IPv6Bytes mask;
  mask.fill(0xFF);
  EXPECT_EQ(SNUtils::ipv6masklen(mask), 128);
}

TEST(IPv6MaskLength, OfFfffFe00Is23) {
  EXPECT_EQ(SNUtils::ipv6masklen({0xFF, 0xFF, 0xFE, 0x00}), 23);
}

TEST(IPv6MaskLength, OfZeroIs0) { EXPECT_EQ(SNUtils::ipv6masklen({}), 0); }

TEST(IPv6MaskLength, IgnoresBytesAfterTheFirstThatIsNotFull) {
  EXPECT_EQ(SNUtils::ipv6masklen({0xFF, 0x00, 0xFF, 0xFF}), 8);
}

}  // namespace
}  // namespace lanternfold
