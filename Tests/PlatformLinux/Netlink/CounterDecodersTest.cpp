// The statistics message, the text of /proc/net/dev and of /proc/stat, link speeds.
#include <gtest/gtest.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/EthtoolMessage.h"
#include "PlatformLinux/Netlink/InterfaceName.h"
#include "PlatformLinux/Netlink/ProcNetDev.h"
#include "PlatformLinux/Netlink/ProcStat.h"
#include "PlatformLinux/Netlink/StatisticsMessage.h"
#include "Tests/PlatformLinux/Netlink/NetlinkFrames.h"

namespace lanternfold::test {
namespace {

using enum DecodeProblem;

Bytes statisticsHeader(std::uint32_t index = 3) {
  return bytesOf(
      if_stats_msg{.family = 0, .pad1 = 0, .pad2 = 0, .ifindex = index, .filter_mask = 1});
}

Bytes counterBytes(std::size_t numbers) {
  Bytes bytes;
  for (std::uint64_t number = 1; number <= numbers; ++number) append(bytes, bytesOf(number));
  return bytes;
}

std::expected<StatisticsMessage, DecodeError> decodeStatistics(const Bytes& payload,
                                                               int type = RTM_NEWSTATS) {
  return decodeStatisticsMessage(payloadMessage(type, payload));
}

TEST(StatisticsMessage, TheCountersStandInTheKernelsOrder) {
  for (const std::size_t numbers : std::vector<std::size_t>{10, 23, 24, 25, 40}) {
    const Bytes payload =
        joined({statisticsHeader(), attribute(IFLA_STATS_LINK_64, counterBytes(numbers))});
    const auto statistics = decodeStatistics(payload).value();
    EXPECT_EQ(statistics.interfaceIndex, 3U);
    EXPECT_EQ(statistics.counters, (LinkCounters64{1, 2, 3, 4, 5, 6, 7, 8, 9, 10})) << numbers;
  }
}

TEST(StatisticsMessage, BadInputIsNamed) {
  const Bytes counters = attribute(IFLA_STATS_LINK_64, counterBytes(25));
  EXPECT_EQ(decodeStatistics(statisticsHeader()).error(),
            (DecodeError{missing, "IFLA_STATS_LINK_64"}));
  EXPECT_EQ(
      decodeStatistics(joined({statisticsHeader(), attribute(IFLA_STATS_LINK_64, counterBytes(9))}))
          .error(),
      (DecodeError{wrongSize, "IFLA_STATS_LINK_64"}));
  EXPECT_EQ(decodeStatistics(joined({statisticsHeader(), counters, counters})).error(),
            (DecodeError{duplicate, "IFLA_STATS_LINK_64"}));
  EXPECT_EQ(decodeStatistics(joined({statisticsHeader(0), counters})).error(),
            (DecodeError{badValue, "ifindex"}));
  EXPECT_EQ(decodeStatistics({}, RTM_NEWLINK).error(), (DecodeError{wrongMessage, "nlmsg_type"}));
}

TEST(StatisticsMessage, CutAtEveryByteItIsAnError) {
  const Bytes whole = joined({statisticsHeader(), attribute(IFLA_STATS_LINK_64, counterBytes(25))});
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(
        decodeStatisticsMessage(payloadMessage(RTM_NEWSTATS, std::span(whole).first(length))))
        << length;
  }
}

constexpr std::string_view heading =
    "Inter-|   Receive                                                |  Transmit\n"
    " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets errs "
    "drop fifo colls carrier compressed\n";

TEST(ProcNetDev, EveryColumnGoesToItsCounter) {
  const std::string text = std::string(heading) +
                           "    lo:   3267      21    0    0    0     0          0         0     "
                           "3267      21    0    0    0     0       0          0\n"
                           "en0:18446744073709551615 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n";
  const auto lines = parseProcNetDev(text).value();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].name, "lo");
  EXPECT_EQ(lines[0].counters.sentBytes, 3267U);
  EXPECT_EQ(lines[1], (ProcNetDevLine{"en0",
                                      {.receivedPackets = 2,
                                       .sentPackets = 10,
                                       .receivedBytes = 18446744073709551615U,
                                       .sentBytes = 9,
                                       .receivedErrors = 3,
                                       .sentErrors = 11,
                                       .receivedDropped = 4,
                                       .sentDropped = 12,
                                       .multicast = 8,
                                       .collisions = 14}}));
}

TEST(ProcNetDev, BadInputIsNamed) {
  const std::string start(heading);
  EXPECT_EQ(parseProcNetDev("").error(), (DecodeError{truncated, "heading"}));
  EXPECT_EQ(parseProcNetDev("one\n").error(), (DecodeError{truncated, "heading"}));
  EXPECT_EQ(parseProcNetDev(start).value().size(), 0U);
  EXPECT_EQ(parseProcNetDev(start + "en0 1 2\n").error(), (DecodeError{missing, "name"}));
  EXPECT_EQ(parseProcNetDev(start + "en0: 1 2 3\n").error(), (DecodeError{missing, "counter"}));
  for (const char* number : {"-1", "1x", "18446744073709551616", "x"}) {
    EXPECT_EQ(parseProcNetDev(start + "en0: " + number + " 2\n").error(),
              (DecodeError{badValue, "counter"}))
        << number;
  }
}

TEST(ProcNetDev, CutAtEveryByteItNeverInventsAnInterface) {
  const std::string text = std::string(heading) + "en0: 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n";
  for (std::size_t length = 0; length < text.size(); ++length) {
    const auto lines = parseProcNetDev(std::string_view(text).substr(0, length));
    if (lines && !lines->empty()) {
      EXPECT_EQ(lines->at(0).counters.collisions, 14U);
    }
  }
}

TEST(ProcNetDev, ANameThatIsNoNameIsLeftOut) {
  const std::string text =
      std::string(heading) + "\x1b[31m: 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n";
  EXPECT_TRUE(parseProcNetDev(text).value().empty());
}

TEST(ProcStat, TheBootTimeIsTheSecondsOfItsLine) {
  const auto moment = bootTimeInProcStat("cpu 1 2 3\nintr 5\nbtime 1700000000\nprocesses 3\n");
  EXPECT_EQ(moment, std::chrono::system_clock::from_time_t(1'700'000'000));
  EXPECT_EQ(bootTimeInProcStat("btime 1"), std::chrono::system_clock::from_time_t(1));
}

TEST(ProcStat, WithoutAUsableLineThereIsNone) {
  for (const char* text : {"", "cpu 1\n", "xbtime 1\n", "btime \n", "btime -5\n", "btime 12a\n",
                           "btime 99999999999999\n", "btime 999999999999999999999\n"}) {
    EXPECT_FALSE(bootTimeInProcStat(text)) << text;
  }
}

Bytes speedPayload(std::uint32_t index, std::uint32_t megabits) {
  return joined(
      {bytesOf(genlmsghdr{.cmd = ETHTOOL_MSG_LINKMODES_GET_REPLY, .version = 1, .reserved = 0}),
       attribute(ETHTOOL_A_LINKMODES_HEADER | NLA_F_NESTED,
                 numberAttributeBytes(ETHTOOL_A_HEADER_DEV_INDEX, index)),
       numberAttributeBytes(ETHTOOL_A_LINKMODES_SPEED, megabits)});
}

TEST(LinkSpeed, MegabitsBecomeBitsAndUnknownIsAbsent) {
  const Bytes known = speedPayload(4, 2500);
  EXPECT_EQ(decodeLinkSpeed(payloadMessage(30, known)).value(), (LinkSpeed{4, 2'500'000'000}));
  const Bytes unknown = speedPayload(4, 0xFFFFFFFF);
  EXPECT_EQ(decodeLinkSpeed(payloadMessage(30, unknown)).value(), (LinkSpeed{4, std::nullopt}));
}

TEST(LinkSpeed, BadInputIsNamed) {
  const Bytes zero = speedPayload(0, 1);
  EXPECT_EQ(decodeLinkSpeed(payloadMessage(30, zero)).error(),
            (DecodeError{badValue, "ETHTOOL_A_HEADER_DEV_INDEX"}));
  EXPECT_EQ(decodeLinkSpeed(payloadMessage(30, std::span(zero).first(4))).error(),
            (DecodeError{missing, "ETHTOOL_A_LINKMODES_HEADER"}));
  for (std::size_t length = 0; length + 8 < zero.size(); ++length) {
    EXPECT_FALSE(decodeLinkSpeed(payloadMessage(30, std::span(zero).first(length)))) << length;
  }
}

TEST(InterfaceName, OnlyVisibleNamesAreTrusted) {
  for (const char* name : {"en0", "lo", "eth0@x", "br-1", "en\xC3\xA9", "a", "abcdefghijklmno"}) {
    EXPECT_TRUE(isTrustworthyInterfaceName(name)) << name;
  }
  for (const char* name : {"", ".", "..", "a/b", "a:1", "a b", "a\tb", "a\x1b", "abcdefghijklmnop",
                           "\xFF", "a\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xC2\xA0", "\x7F"}) {
    EXPECT_FALSE(isTrustworthyInterfaceName(name)) << name;
  }
}

}  // namespace
}  // namespace lanternfold::test
