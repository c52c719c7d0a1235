// The link metrics, as `SNUtils` answers them.
#include <limits>

#include <gtest/gtest.h>

#include "Tests/Support/NetBaseEnvironment.h"

namespace lanternfold {
namespace {

using Dictionary = PropertyListDictionary;

LinkRecord linkNamed(const char* name) {
  LinkRecord link;
  link.name = name;
  return link;
}

class LinkMetricsTest : public testing::Test {
 protected:
  /// The metrics of one link with this hardware address.
  Dictionary metricsWith(const std::vector<std::uint8_t>& hardwareAddress) {
    world.kernel.addLink("en0", hardwareAddress);
    return world.snUtils.linkInterfacesMetrics().at("en0");
  }

  NetBaseEnvironment world;
};

TEST_F(LinkMetricsTest, CarryEveryFigureAtItsFullWidth) {
  constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
  LinkRecord link = linkNamed("en0");
  link.type = 255;
  link.physical = 254;
  link.mtu = std::numeric_limits<std::uint32_t>::max();
  link.baudrate = largest;
  link.recvBytes = largest - 1;
  link.sentBytes = largest - 2;
  link.recvPackets = largest - 3;
  link.sentPackets = largest - 4;
  link.recvErrors = largest - 5;
  link.sentErrors = largest - 6;
  link.collisions = largest - 7;
  world.kernel.addLink(link);

  const Dictionary expected{{"type", std::uint64_t{255}},  {"physical", std::uint64_t{254}},
                            {"baudrate", largest},         {"mtu", std::uint64_t{4294967295}},
                            {"recv_bytes", largest - 1},   {"sent_bytes", largest - 2},
                            {"recv_packets", largest - 3}, {"sent_packets", largest - 4},
                            {"recv_errors", largest - 5},  {"sent_errors", largest - 6},
                            {"collisions", largest - 7}};
  EXPECT_EQ(world.snUtils.linkInterfacesMetrics().at("en0"), expected);
}

TEST_F(LinkMetricsTest, ShowAHardwareAddressInUpperCase) {
  EXPECT_EQ(*metricsWith({0xAE, 0xDE, 0x48, 0x00, 0x11, 0x22}).find("hw_address"),
            PropertyListValue("AE:DE:48:00:11:22"));
}

TEST_F(LinkMetricsTest, HideAHardwareAddressOfAllZeros) {
  EXPECT_EQ(metricsWith({0, 0, 0, 0, 0, 0}).find("hw_address"), nullptr);
}

TEST_F(LinkMetricsTest, HideThePlaceholderOfAWithheldHardwareAddress) {
  EXPECT_EQ(metricsWith({2, 0, 0, 0, 0, 0}).find("hw_address"), nullptr);
}

TEST_F(LinkMetricsTest, ShowAnAddressThatOnlyBeginsLikeThePlaceholder) {
  EXPECT_EQ(*metricsWith({2, 0, 0, 0, 0, 1}).find("hw_address"),
            PropertyListValue("02:00:00:00:00:01"));
}

TEST_F(LinkMetricsTest, HideAnAddressOfZeroBytes) {
  EXPECT_EQ(metricsWith({}).find("hw_address"), nullptr);
}

TEST_F(LinkMetricsTest, HideAnAddressOfFiveBytes) {
  EXPECT_EQ(metricsWith({1, 2, 3, 4, 5}).find("hw_address"), nullptr);
}

TEST_F(LinkMetricsTest, HideAnAddressOfTwentyBytes) {
  EXPECT_EQ(metricsWith(std::vector<std::uint8_t>(20, 7)).find("hw_address"), nullptr);
}

TEST_F(LinkMetricsTest, OfTwoLinksOfOneNameTheLastOneWins) {
  LinkRecord first = linkNamed("en0");
  first.hardwareAddress = {{1, 2, 3, 4, 5, 6}};
  first.recvBytes = 1;
  LinkRecord second = linkNamed("en0");
  second.recvBytes = 2;
  world.kernel.addLink(first);
  world.kernel.appendLinkRecord(second);

  const auto metrics = world.snUtils.linkInterfacesMetrics();
  ASSERT_EQ(metrics.size(), 1U);
  EXPECT_EQ(*metrics.at("en0").find("recv_bytes"), PropertyListValue(std::uint64_t{2}));
  EXPECT_EQ(metrics.at("en0").find("hw_address"), nullptr) << "nothing of the earlier one is left";
  const auto interfaces = world.snUtils.inetInterfacesWithPrefix({}, {});
  EXPECT_EQ(*interfaces.at("en0").find("metrics"), PropertyListValue(metrics.at("en0")));
}

TEST_F(LinkMetricsTest, AreEmptyWhenTheLinkListIsRefused) {
  world.kernel.addLink("en0");
  world.kernel.fail(FakeNetworkKernel::Table::linkRecords, NetworkKernelError::refused);
  EXPECT_TRUE(world.snUtils.linkInterfacesMetrics().empty());
}

}  // namespace
}  // namespace lanternfold
