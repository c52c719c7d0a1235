#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetBase/NetUtils.h"
#include "Tests/Support/NetBaseEnvironment.h"

namespace lanternfold {
namespace {

using testing::Key;
using testing::UnorderedElementsAre;

class NetUtilsTest : public testing::Test {
 protected:
  NetBaseEnvironment world;
};

TEST_F(NetUtilsTest, MakesARecordOfAnAdapter) {
  world.kernel.addLink("en0");
  world.kernel.setCounters("en0", {.recvBytes = 10, .sentBytes = 20});
  world.kernel.addIPv4Address("en0", {192, 168, 1, 20}, {255, 255, 255, 0});
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 1});
  const auto interfaces = world.netUtils.interfaces({}, {});
  NetInterface::Metrics metrics;
  metrics.type = 6;
  metrics.mtu = 1500;
  metrics.recvBytes = 10;
  metrics.sentBytes = 20;
  metrics.hwAddress = "02:42:AC:11:00:02";
  const NetInterface expected{.name = "en0",
                              .isActive = true,
                              .ipv4 = {{.ip = "192.168.1.20",
                                        .netmask = "255.255.255.0",
                                        .gateway = "192.168.1.1",
                                        .prefix = 24,
                                        .cidr = "192.168.1.1/24"}},
                              .ipv6 = {},
                              .metrics = metrics};
  ASSERT_EQ(interfaces.size(), 1U);
  EXPECT_EQ(interfaces.at("en0"), expected);
}

TEST_F(NetUtilsTest, InterfaceWithOnlyALinkEntryIsInactiveWithMetricsPresent) {
  world.kernel.addLink("en0");
  const auto interface = world.netUtils.interfaces({}, {}).at("en0");
  EXPECT_FALSE(interface.isActive);
  EXPECT_TRUE(interface.ipv4.empty());
  EXPECT_TRUE(interface.ipv6.empty());
  EXPECT_TRUE(interface.metrics);
}

TEST_F(NetUtilsTest, InterfaceWithoutLinkCountersHasNoMetrics) {
  world.kernel.setAddressEntries({{.name = "en0",
                                   .address = IPv4Bytes{10, 0, 0, 1},
                                   .netmask = IPv4Bytes{255, 0, 0, 0},
                                   .statistics = {}}});
  const auto interface = world.netUtils.interfaces({}, {}).at("en0");
  EXPECT_TRUE(interface.isActive);
  EXPECT_EQ(interface.metrics, std::nullopt);
}

TEST_F(NetUtilsTest, PrefixEnReturnsOnlyNamesThatBeginWithEn) {
  world.kernel.addLoopback();
  for (const char* name : {"en0", "en01", "eth0", "bridge0"}) world.kernel.addLink(name);
  EXPECT_THAT(world.netUtils.interfaces("en", {}), UnorderedElementsAre(Key("en0"), Key("en01")));
}

TEST_F(NetUtilsTest, ExcludingTheLoopbackReturnsEverythingElse) {
  world.kernel.addLoopback();
  for (const char* name : {"en0", "lo0"}) world.kernel.addLink(name);
  EXPECT_THAT(world.netUtils.interfaces({}, std::vector<std::string>{"lo0"}),
              UnorderedElementsAre(Key("lo"), Key("en0")));
}

TEST_F(NetUtilsTest, FailureBelowGivesNoInterfaces) {
  world.kernel.addLink("en0");
  world.kernel.fail(FakeNetworkKernel::Table::addressEntries, NetworkKernelError::failed);
  EXPECT_TRUE(world.netUtils.interfaces({}, {}).empty());
}

}  // namespace
}  // namespace lanternfold
