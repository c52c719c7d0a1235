#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PlatformDarwin/InterfaceListDecoder.h"
#include "Tests/PlatformDarwin/MessageBuilder.h"

namespace lanternfold::darwin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

LinkRecord ethernet(std::string name, std::uint32_t index) {
  LinkRecord link;
  link.name = std::move(name);
  link.index = index;
  link.hardwareAddress = {{0xAE, 0xDE, 0x48, 0x00, 0x11, 0x22}};
  link.type = 6;
  link.mtu = 1500;
  return link;
}

/// The records of a dump that must decode.
std::vector<LinkRecord> decoded(const Bytes& dump) {
  const auto links = decodeInterfaceList(dump);
  EXPECT_TRUE(links);
  return links.value_or(std::vector<LinkRecord>{});
}

void expectMalformed(const Bytes& dump) {
  const auto links = decodeInterfaceList(dump);
  ASSERT_FALSE(links);
  EXPECT_EQ(links.error(), NetworkKernelError::malformed);
}

TEST(InterfaceList, DecodesEveryFieldFromItsOwnPlace) {
  constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
  LinkRecord link = ethernet("en0", 4);
  link.physical = 3;
  link.baudrate = largest;
  link.mtu = 0x01020304;
  link.recvBytes = largest - 1;
  link.sentBytes = largest - 2;
  link.recvPackets = largest - 3;
  link.sentPackets = largest - 4;
  link.recvErrors = largest - 5;
  link.sentErrors = largest - 6;
  link.collisions = 0x0102030405060708;
  EXPECT_THAT(decoded(interfaceMessage(link)), ElementsAre(link));
}

TEST(InterfaceList, BuilderMakesAHeaderOf160Bytes) {
  EXPECT_EQ(interfaceMessage(ethernet("en0", 4), {}).size(), 160U);
}

TEST(InterfaceList, EmptyDumpHasNoLinks) { EXPECT_THAT(decoded({}), IsEmpty()); }

TEST(InterfaceList, KeepsTheOrderAndBothLinksOfOneName) {
  const LinkRecord first = ethernet("en0", 4);
  LinkRecord second = ethernet("en0", 5);
  second.recvBytes = 7;
  const LinkRecord third = ethernet("awdl0", 6);
  EXPECT_THAT(
      decoded(joined({interfaceMessage(first), interfaceMessage(second), interfaceMessage(third)})),
      ElementsAre(first, second, third));
}

TEST(InterfaceList, PassesOverMessagesOfOtherTypes) {
  const LinkRecord link = ethernet("en0", 4);
  Bytes addressMessage{std::byte{0}, std::byte{0}, std::byte{5}, std::byte{12}};
  appendZeros(addressMessage, 17);
  EXPECT_THAT(decoded(joined({withLength(addressMessage), interfaceMessage(link),
                              interfaceMessage(link, linkSocketAddress("en1", {}, 5), 14)})),
              ElementsAre(link));
}

TEST(InterfaceList, PassesOverAMessageWhoseFirstAddressIsOfAnotherFamily) {
  EXPECT_THAT(decoded(interfaceMessage(ethernet("en0", 4), ipv4SocketAddress({10, 0, 0, 1}))),
              IsEmpty());
}

TEST(InterfaceList, PassesOverAMessageWithoutAnAddress) {
  EXPECT_THAT(decoded(interfaceMessage(ethernet("en0", 4), {})), IsEmpty());
}

TEST(InterfaceList, PassesOverAnAddressOfLengthZero) {
  Bytes address = linkSocketAddress("en0", {}, 4);
  address[0] = std::byte{0};
  EXPECT_THAT(decoded(interfaceMessage(ethernet("en0", 4), address)), IsEmpty());
}

TEST(InterfaceList, PassesOverAnAddressPastTheEndOfItsMessage) {
  Bytes address = linkSocketAddress("en0", {}, 4);
  address[0] = std::byte{21};
  EXPECT_THAT(decoded(interfaceMessage(ethernet("en0", 4), address)), IsEmpty());
}

TEST(InterfaceList, TunnelWithoutAHardwareAddressHasOneOfZeroBytes) {
  LinkRecord tunnel = ethernet("utun0", 9);
  tunnel.hardwareAddress = {};
  EXPECT_THAT(decoded(interfaceMessage(tunnel)), ElementsAre(tunnel));
}

TEST(InterfaceList, NameOf15BytesIsTheLongest) {
  const LinkRecord link = ethernet("abcdefghijklmno", 4);
  EXPECT_THAT(decoded(interfaceMessage(link)), ElementsAre(link));
}

TEST(InterfaceList, NameOf16BytesWithoutATerminatorIsLeftOut) {
  const LinkRecord other = ethernet("en0", 4);
  EXPECT_THAT(
      decoded(joined({interfaceMessage(ethernet("abcdefghijklmnop", 3)), interfaceMessage(other)})),
      ElementsAre(other));
}

TEST(InterfaceList, EmptyNameIsLeftOut) {
  EXPECT_THAT(decoded(interfaceMessage(ethernet("", 4))), IsEmpty());
}

TEST(InterfaceList, NamePastTheEndOfItsAddressIsLeftOut) {
  Bytes address = linkSocketAddress("en0", {}, 4);
  address[5] = std::byte{13};  // twelve bytes of data are there
  EXPECT_THAT(decoded(interfaceMessage(ethernet("en0", 4), address)), IsEmpty());
}

TEST(InterfaceList, NameEndsAtItsFirstZero) {
  Bytes address = linkSocketAddress(std::string_view("en0\0x", 5), {}, 4);
  const auto links = decoded(interfaceMessage(ethernet("", 4), address));
  ASSERT_EQ(links.size(), 1U);
  EXPECT_EQ(links[0].name, "en0");
}

TEST(InterfaceList, HardwareAddressPastTheEndOfItsAddressIsNone) {
  Bytes address = linkSocketAddress("en0", {}, 4);
  address[6] = std::byte{10};  // nine bytes are left behind the name
  const auto links = decoded(interfaceMessage(ethernet("en0", 4), address));
  ASSERT_EQ(links.size(), 1U);
  EXPECT_EQ(links[0].hardwareAddress, LinkAddress{});
}

TEST(InterfaceList, HardwareAddressOfEightBytesIsKeptAsItIs) {
  LinkRecord link = ethernet("fw0", 4);
  link.hardwareAddress = {{1, 2, 3, 4, 5, 6, 7, 8}};
  EXPECT_THAT(decoded(interfaceMessage(link)), ElementsAre(link));
}

TEST(InterfaceList, HardwareAddressOfThirtyTwoBytesIsKeptAndALongerOneIsNone) {
  const std::vector<std::uint8_t> longest(LinkAddressBytes::maximumSize, 7);
  LinkRecord link = ethernet("ib0", 4);
  link.hardwareAddress = {LinkAddressBytes(longest)};
  EXPECT_THAT(decoded(interfaceMessage(link)), ElementsAre(link));

  Bytes address = linkSocketAddress("ib0", link.hardwareAddress, 4);
  address.resize(address.size() + 8);
  address[0] = static_cast<std::byte>(address.size());
  address[6] = std::byte{LinkAddressBytes::maximumSize + 1};
  const auto links = decoded(interfaceMessage(ethernet("ib0", 4), address));
  ASSERT_EQ(links.size(), 1U);
  EXPECT_EQ(links[0].hardwareAddress, LinkAddress{});
}

TEST(InterfaceList, MessageOfLengthZeroIsMalformed) {
  Bytes dump = interfaceMessage(ethernet("en0", 4));
  appendZeros(dump, 160);
  expectMalformed(dump);
}

TEST(InterfaceList, MessageShorterThanWhatAllHeadersShareIsMalformed) {
  expectMalformed({std::byte{3}, std::byte{0}, std::byte{5}});
}

TEST(InterfaceList, MessageLengthPastTheEndIsMalformed) {
  Bytes dump = interfaceMessage(ethernet("en0", 4));
  dump[0] = static_cast<std::byte>(dump.size() + 1);
  expectMalformed(dump);
}

TEST(InterfaceList, CutHeaderIsMalformed) {
  Bytes message = interfaceMessage(ethernet("en0", 4));
  message.resize(159);
  expectMalformed(withLength(message));
}

TEST(InterfaceList, CutAtAnyByteIsMalformedOrEndsAtAMessage) {
  const LinkRecord first = ethernet("en0", 4);
  const LinkRecord second = ethernet("en1", 5);
  const Bytes one = interfaceMessage(first);
  const Bytes both = joined({one, interfaceMessage(second)});
  for (std::size_t length = 1; length < both.size(); ++length) {
    const Bytes cut(both.begin(), both.begin() + static_cast<std::ptrdiff_t>(length));
    if (length == one.size()) {
      EXPECT_THAT(decoded(cut), ElementsAre(first));
    } else {
      expectMalformed(cut);
    }
  }
}

TEST(InterfaceList, MessageCutAtAnyByteGivesNothingOrTheLink) {
  // Cut with a length that agrees: what is missing is then the address, or part of the header.
  const LinkRecord link = ethernet("en0", 4);
  const Bytes whole = interfaceMessage(link);
  for (std::size_t length = 4; length < whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    const auto links = decodeInterfaceList(withLength(cut));
    EXPECT_EQ(links.has_value(), length >= 160) << length;
    if (links) {
      EXPECT_THAT(*links, IsEmpty()) << length;
    }
  }
}

}  // namespace
}  // namespace lanternfold::darwin
