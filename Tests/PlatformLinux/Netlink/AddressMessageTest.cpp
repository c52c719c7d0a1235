#include <sys/socket.h>

#include <gtest/gtest.h>
#include <linux/if_addr.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/AddressMessage.h"
#include "Tests/PlatformLinux/Netlink/NetlinkFrames.h"

namespace lanternfold::test {
namespace {

Bytes header(std::uint8_t family, std::uint8_t prefixLength, std::uint32_t index = 3) {
  return bytesOf(ifaddrmsg{.ifa_family = family,
                           .ifa_prefixlen = prefixLength,
                           .ifa_flags = 0,
                           .ifa_scope = 0,
                           .ifa_index = index});
}

std::expected<AddressMessage, DecodeError> decode(const Bytes& payload, int type = RTM_NEWADDR) {
  return decodeAddressMessage(payloadMessage(type, payload));
}

const Bytes here = attribute(IFA_LOCAL, {192, 0, 2, 1});
const Bytes there = attribute(IFA_ADDRESS, {192, 0, 2, 2});

TEST(AddressMessage, TheLocalEndOfAPointToPointLinkIsTheAddress) {
  const auto address = decode(joined({header(AF_INET, 32), there, here})).value();
  EXPECT_EQ(address.interfaceIndex, 3U);
  EXPECT_EQ(address.address, SocketAddress(IPv4Bytes{192, 0, 2, 1}));
  EXPECT_EQ(address.netmask, SocketAddress(IPv4Bytes{255, 255, 255, 255}));
  EXPECT_FALSE(address.isRemoval);
}

TEST(AddressMessage, WithoutALocalEndTheAddressIsTheAddress) {
  const auto address = decode(joined({header(AF_INET, 23), there}), RTM_DELADDR).value();
  EXPECT_EQ(address.address, SocketAddress(IPv4Bytes{192, 0, 2, 2}));
  EXPECT_EQ(address.netmask, SocketAddress(IPv4Bytes{255, 255, 254, 0}));
  EXPECT_TRUE(address.isRemoval);
}

TEST(AddressMessage, AnIPv6AddressHasItsMask) {
  const Bytes bytes{0x20, 1, 0xD, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
  const auto address =
      decode(joined({header(AF_INET6, 65), attribute(IFA_ADDRESS, bytes)})).value();
  IPv6Bytes expected{};
  std::ranges::copy(bytes, expected.begin());
  EXPECT_EQ(address.address, SocketAddress(expected));
  const IPv6Bytes mask{255, 255, 255, 255, 255, 255, 255, 255, 128, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(address.netmask, SocketAddress(mask));
}

TEST(AddressMessage, WithoutAnAddressThereIsNoMaskEither) {
  const auto address = decode(header(AF_INET, 24)).value();
  EXPECT_FALSE(address.address);
  EXPECT_FALSE(address.netmask);
}

TEST(AddressMessage, AnotherFamilyIsOnlyKnownToBeThere) {
  const auto address = decode(joined({header(AF_PACKET, 200), attribute(IFA_LOCAL, {1})})).value();
  EXPECT_EQ(address.address, SocketAddress(OtherAddress{}));
  EXPECT_FALSE(address.netmask);
}

TEST(AddressMessage, BadInputIsNamed) {
  using enum DecodeProblem;
  EXPECT_EQ(decode(joined({header(AF_INET, 33), here})).error(),
            (DecodeError{badValue, "ifa_prefixlen"}));
  EXPECT_EQ(decode(joined({header(AF_INET6, 129), here})).error(),
            (DecodeError{badValue, "ifa_prefixlen"}));
  EXPECT_EQ(decode(joined({header(AF_INET6, 64), here})).error(),
            (DecodeError{wrongSize, "IFA_LOCAL"}));
  EXPECT_EQ(decode(joined({header(AF_INET, 8), attribute(IFA_ADDRESS, {1, 2, 3})})).error(),
            (DecodeError{wrongSize, "IFA_ADDRESS"}));
  EXPECT_EQ(decode(joined({header(AF_INET, 8), here, here})).error(),
            (DecodeError{duplicate, "IFA_LOCAL"}));
  EXPECT_EQ(decode(joined({header(AF_INET, 8, 0), here})).error(),
            (DecodeError{badValue, "ifa_index"}));
  EXPECT_EQ(decode(header(AF_INET, 8), RTM_NEWLINK).error(),
            (DecodeError{wrongMessage, "nlmsg_type"}));
}

TEST(AddressMessage, CutAtEveryByteItIsAnErrorOrLacksItsAddress) {
  const Bytes whole = joined({header(AF_INET, 24), here});
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const auto address =
        decodeAddressMessage(payloadMessage(RTM_NEWADDR, std::span(whole).first(length)));
    EXPECT_TRUE(!address || !address->address) << length;
  }
}

TEST(AddressMessage, EveryPrefixLengthHasItsMask) {
  for (int length = 0; length <= 32; ++length) {
    std::uint32_t bits = 0;
    for (const auto byte : ipv4MaskOfPrefix(static_cast<std::uint8_t>(length))) {
      bits = bits << 8U | byte;
    }
    EXPECT_EQ(bits, length == 0 ? 0 : 0xFFFFFFFFU << (32 - length)) << length;
  }
  EXPECT_EQ(ipv6MaskOfPrefix(0), IPv6Bytes{});
  EXPECT_EQ(ipv6MaskOfPrefix(128).back(), 255);
}

}  // namespace
}  // namespace lanternfold::test
