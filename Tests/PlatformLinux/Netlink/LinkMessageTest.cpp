#include <net/if.h>
#include <net/if_arp.h>

#include <gtest/gtest.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/LinkMessage.h"
#include "Tests/PlatformLinux/Netlink/NetlinkFrames.h"

namespace lanternfold::test {
namespace {

Bytes header(std::uint8_t family = AF_UNSPEC, int index = 4) {
  return bytesOf(ifinfomsg{.ifi_family = family,
                           .__ifi_pad = 0,
                           .ifi_type = ARPHRD_ETHER,
                           .ifi_index = index,
                           .ifi_flags = IFF_UP | IFF_RUNNING,
                           .ifi_change = 0});
}

const Bytes name = attribute(IFLA_IFNAME, textBytes("eth0"));

Bytes withName(const Bytes& nameAttribute) { return joined({header(), nameAttribute}); }

std::expected<LinkMessage, DecodeError> decode(const Bytes& payload, int type = RTM_NEWLINK) {
  return decodeLinkMessage(payloadMessage(type, payload));
}

constexpr LinkCounters64 counters64{.receivedPackets = 1,
                                    .sentPackets = 2,
                                    .receivedBytes = 0x1'0000'0003,
                                    .sentBytes = 4,
                                    .receivedErrors = 5,
                                    .sentErrors = 6,
                                    .receivedDropped = 7,
                                    .sentDropped = 8,
                                    .multicast = 9,
                                    .collisions = 10};

Bytes fullPayload() {
  return joined({header(), name, attribute(IFLA_ADDRESS, {2, 0, 0, 0, 0, 9}),
                 numberAttributeBytes(IFLA_MTU, std::uint32_t{1400}),
                 numberAttributeBytes(IFLA_OPERSTATE, std::uint8_t{6}),
                 numberAttributeBytes(IFLA_CARRIER, std::uint8_t{1}),
                 numberAttributeBytes(IFLA_MASTER, std::uint32_t{12}),
                 attribute(IFLA_STATS64, bytesOf(counters64)),
                 attribute(IFLA_STATS, bytesOf(LinkCounters32{.sentBytes = 4})),
                 attribute(IFLA_LINKINFO | NLA_F_NESTED,
                           joined({attribute(IFLA_INFO_KIND, textBytes("veth")),
                                   attribute(IFLA_INFO_SLAVE_KIND, textBytes("bridge"))})),
                 attribute(IFLA_PARENT_DEV_NAME, textBytes("virtio2")),
                 attribute(IFLA_PARENT_DEV_BUS_NAME, textBytes("virtio"))});
}

TEST(LinkMessage, EveryFieldComesFromItsAttribute) {
  LinkMessage expected;
  expected.index = 4;
  expected.name = "eth0";
  expected.hardwareType = ARPHRD_ETHER;
  expected.flags = IFF_UP | IFF_RUNNING;
  expected.operationalState = 6;
  expected.carrier = true;
  expected.mtu = 1400;
  expected.address = {2, 0, 0, 0, 0, 9};
  expected.counters32 = LinkCounters32{.sentBytes = 4};
  expected.counters64 = counters64;
  expected.kind = "veth";
  expected.portKind = "bridge";
  expected.masterIndex = 12;
  expected.parentDeviceName = "virtio2";
  expected.parentDeviceBus = "virtio";
  EXPECT_EQ(decode(fullPayload()).value(), expected);
  EXPECT_TRUE(expected.describesLink());
}

TEST(LinkMessage, WhatIsNotSentIsAbsent) {
  const auto link = decode(withName(name), RTM_DELLINK).value();
  EXPECT_TRUE(link.isRemoval);
  EXPECT_FALSE(link.mtu || link.carrier || link.operationalState || link.counters64 || link.kind ||
               link.masterIndex || link.parentDeviceName);
  EXPECT_TRUE(link.address.empty());
  EXPECT_EQ(widestCountersOf(link), LinkCounters64{});
  EXPECT_EQ(narrowCountersOf(link), LinkCounters32{});
}

TEST(LinkMessage, CutAtEveryByteItIsAnErrorOrALinkOfFewerFields) {
  const Bytes whole = fullPayload();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const auto link =
        decodeLinkMessage(payloadMessage(RTM_NEWLINK, std::span(whole).first(length)));
    if (length < sizeof(ifinfomsg)) {
      EXPECT_EQ(link.error(), (DecodeError{DecodeProblem::truncated, "ifinfomsg"}));
    } else if (link) {
      EXPECT_EQ(link->name, "eth0") << length;
    }
  }
}

TEST(LinkMessage, ANameOfSixteenBytesWithoutATerminatorIsABadName) {
  const Bytes sixteen(16, 'a');
  EXPECT_EQ(decode(withName(attribute(IFLA_IFNAME, sixteen))).error(),
            (DecodeError{DecodeProblem::badValue, "IFLA_IFNAME"}));
}

TEST(LinkMessage, NamesThatAreNoNamesAreErrors) {
  using enum DecodeProblem;
  EXPECT_EQ(decode(header()).error(), (DecodeError{missing, "IFLA_IFNAME"}));
  EXPECT_EQ(decode(joined({header(), name, name})).error(),
            (DecodeError{duplicate, "IFLA_IFNAME"}));
  EXPECT_EQ(decode(withName(attribute(IFLA_IFNAME, textBytes("")))).error(),
            (DecodeError{badValue, "IFLA_IFNAME"}));
  EXPECT_EQ(decode(withName(attribute(IFLA_IFNAME, textBytes("a/b")))).error(),
            (DecodeError{badValue, "IFLA_IFNAME"}));
  EXPECT_EQ(decode(withName(attribute(IFLA_IFNAME, textBytes("abcdefghijklmnop")))).error(),
            (DecodeError{wrongSize, "IFLA_IFNAME"}));
}

TEST(LinkMessage, AnIndexThatNoLinkCanHaveIsAnError) {
  for (const int index : {0, -1}) {
    EXPECT_EQ(decode(joined({header(AF_UNSPEC, index), name})).error(),
              (DecodeError{DecodeProblem::badValue, "ifi_index"}));
  }
}

TEST(LinkMessage, AnotherTypeOfMessageIsNotALink) {
  EXPECT_EQ(decode(withName(name), RTM_NEWADDR).error(),
            (DecodeError{DecodeProblem::wrongMessage, "nlmsg_type"}));
}

TEST(LinkMessage, ShortCountersAreRefusedAndLongOnesAccepted) {
  Bytes counters = bytesOf(counters64);
  counters.resize(25 * sizeof(std::uint64_t));
  const auto link = decode(joined({header(), name, attribute(IFLA_STATS64, counters)})).value();
  EXPECT_EQ(link.counters64, counters64);
  EXPECT_EQ(narrowCountersOf(link).receivedBytes, 3U) << "modulo 2^32";
  counters.resize(79);
  EXPECT_EQ(decode(joined({header(), name, attribute(IFLA_STATS64, counters)})).error(),
            (DecodeError{DecodeProblem::wrongSize, "IFLA_STATS64"}));
}

TEST(LinkMessage, ABrokenNestIsNamed) {
  const Bytes nest = attribute(IFLA_LINKINFO, joined({attribute(IFLA_INFO_KIND, {'v', 'e'})}));
  EXPECT_EQ(decode(joined({header(), name, nest})).error(),
            (DecodeError{DecodeProblem::badValue, "IFLA_INFO_KIND"}));
}

TEST(LinkMessage, LeavingABridgeOrAWirelessEventDoesNotDescribeTheLink) {
  EXPECT_FALSE(decode(joined({header(AF_BRIDGE), name}), RTM_DELLINK).value().describesLink());
  EXPECT_FALSE(decode(joined({header(AF_INET6), name})).value().describesLink());
  const auto wireless = decode(joined({header(), name, attribute(IFLA_WIRELESS, {1, 2, 3, 4})}));
  EXPECT_FALSE(wireless.value().describesLink());
}

}  // namespace
}  // namespace lanternfold::test
