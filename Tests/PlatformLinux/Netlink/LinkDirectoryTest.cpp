#include <gtest/gtest.h>

#include "PlatformLinux/Netlink/CounterRecords.h"
#include "PlatformLinux/Netlink/LinkDirectory.h"
#include "PlatformLinux/Netlink/StatisticsMapping.h"

namespace lanternfold::test {
namespace {

using Names = ConnectionMetricsMap::Names;

LinkMessage link(std::uint32_t index, std::string name, std::uint32_t mtu = 1500) {
  LinkMessage message;
  message.index = index;
  message.name = std::move(name);
  message.mtu = mtu;
  return message;
}

LinkMessage removal(std::uint32_t index, std::string name) {
  LinkMessage message = link(index, std::move(name));
  message.isRemoval = true;
  return message;
}

StatisticsMessage counters(std::uint32_t index, std::uint64_t receivedBytes) {
  return {index, {.receivedBytes = receivedBytes}};
}

TEST(LinkDirectory, NamesAreSortedAndSlotsGoByIndex) {
  LinkDirectory directory;
  directory.apply(link(7, "en0", 9000));
  directory.apply(link(2, "lo", 65536));
  directory.apply(link(3, "br0"));
  EXPECT_EQ(*directory.names(), (Names{"br0", "en0", "lo"}));
  EXPECT_EQ(directory.slots(),
            (std::vector<LinkDirectory::Slot>{{2, 2, 65536}, {3, 0, 1500}, {7, 1, 9000}}));
}

TEST(LinkDirectory, EventsKeepItEqualToAFreshDump) {
  LinkDirectory followed;
  for (const LinkMessage& event :
       {link(1, "lo"), link(2, "en0"), link(3, "en1"), removal(2, "en0"), link(4, "en0"),
        link(3, "wan", 1400), link(5, "gone"), removal(5, "gone"), removal(99, "unknown")}) {
    followed.apply(event);
  }
  LinkDirectory fresh;
  for (const LinkMessage& dumped : {link(1, "lo"), link(3, "wan", 1400), link(4, "en0")}) {
    fresh.apply(dumped);
  }
  EXPECT_EQ(*followed.names(), *fresh.names());
  EXPECT_EQ(followed.slots(), fresh.slots());
}

TEST(LinkDirectory, TheNamesStayTheSameObjectUntilSomethingChanges) {
  LinkDirectory directory;
  directory.apply(link(1, "lo"));
  const auto names = directory.names();
  directory.apply(link(1, "lo"));
  EXPECT_EQ(directory.names(), names);
  directory.apply(link(1, "lo2"));
  EXPECT_NE(directory.names(), names);
}

TEST(LinkDirectory, MessagesThatDoNotDescribeALinkAreIgnored) {
  LinkDirectory directory;
  directory.apply(link(1, "en0"));
  LinkMessage leftBridge = removal(1, "en0");
  leftBridge.family = 7;  // AF_BRIDGE
  directory.apply(leftBridge);
  LinkMessage wireless = link(1, "other");
  wireless.hasWirelessEvent = true;
  directory.apply(wireless);
  EXPECT_EQ(*directory.names(), Names{"en0"});
}

TEST(LinkDirectory, OfTwoLinksWithOneNameTheYoungerIsListed) {
  LinkDirectory directory;
  directory.apply(link(2, "en0"));
  directory.apply(link(9, "en0"));
  EXPECT_EQ(directory.slots(), (std::vector<LinkDirectory::Slot>{{9, 0, 1500}}));
  directory.apply(link(2, "en1"));
  EXPECT_EQ(*directory.names(), (Names{"en0", "en1"}));
}

TEST(StatisticsMapping, CountersGoToTheNamesOfTheirIndexes) {
  LinkDirectory directory;
  directory.apply(link(2, "zz"));
  directory.apply(link(3, "aa", 9000));
  const std::vector statistics = {counters(2, 20), counters(3, 30)};
  const auto mapping = mapStatistics(statistics, directory);
  EXPECT_FALSE(mapping.hasUnknownLinks);
  EXPECT_EQ(mapping.metrics.find("zz")->recvBytes, 20U);
  EXPECT_EQ(mapping.metrics.find("aa")->recvBytes, 30U);
  EXPECT_EQ(mapping.metrics.find("aa")->mtu, 9000U);
  EXPECT_EQ(&mapping.metrics.name(0), &directory.names()->at(0)) << "no name is copied";
}

TEST(StatisticsMapping, AVanishedLinkIsLeftOutAndAnUnknownOneReported) {
  LinkDirectory directory;
  directory.apply(link(2, "stays"));
  directory.apply(link(3, "vanished"));
  const std::vector statistics = {counters(2, 20), counters(9, 90)};
  const auto mapping = mapStatistics(statistics, directory);
  EXPECT_TRUE(mapping.hasUnknownLinks);
  ASSERT_EQ(mapping.metrics.size(), 1U);
  EXPECT_EQ(mapping.metrics.name(0), "stays");
}

TEST(StatisticsMapping, TheOrderOfTheDumpDoesNotMatter) {
  LinkDirectory directory;
  directory.apply(link(2, "a"));
  directory.apply(link(3, "b"));
  const std::vector statistics = {counters(3, 30), counters(2, 20)};
  const auto mapping = mapStatistics(statistics, directory);
  EXPECT_EQ(mapping.metrics.find("a")->recvBytes, 20U);
  EXPECT_EQ(mapping.metrics.find("b")->recvBytes, 30U);
}

TEST(LinkMetrics, EachCounterGoesToItsField) {
  const LinkCounters64 given{.receivedPackets = 1,
                             .sentPackets = 2,
                             .receivedBytes = 3,
                             .sentBytes = 4,
                             .receivedErrors = 5,
                             .sentErrors = 6,
                             .receivedDropped = 7,
                             .sentDropped = 8,
                             .multicast = 9,
                             .collisions = 10};
  EXPECT_EQ(connectionMetricsOf(given, 1500), (ConnectionMetrics{.sentBytes = 4,
                                                                 .recvBytes = 3,
                                                                 .sentError = 6,
                                                                 .recvError = 5,
                                                                 .sentPacket = 2,
                                                                 .recvPacket = 1,
                                                                 .collisions = 10,
                                                                 .mtu = 1500}));
}

}  // namespace
}  // namespace lanternfold::test
