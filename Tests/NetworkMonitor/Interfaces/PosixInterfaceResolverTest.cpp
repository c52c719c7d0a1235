#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkMonitor/Interfaces/PosixInterfaceResolver.h"
#include "NetworkMonitor/Metrics/BsdConnectionMetricsReader.h"
#include "Tests/Support/FakeConnectionMetricsReader.h"
#include "Tests/Support/FakeNetworkConfiguration.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/NetBaseEnvironment.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Table = FakeNetworkKernel::Table;

const IPv4Bytes mask24{255, 255, 255, 0};
const IPv6Bytes mask64{255, 255, 255, 255, 255, 255, 255, 255};

std::vector<std::string> namesOf(const std::vector<BasicInterface>& interfaces) {
  std::vector<std::string> names;
  for (const BasicInterface& interface : interfaces) names.push_back(interface.name);
  return names;
}

class PosixInterfaceResolverTest : public testing::Test {
 protected:
  /// A link that the counter reader knows too.
  void addLink(const char* name) {
    world.kernel.addLink(name);
    reader->set(name, ConnectionMetrics::initial(1500));
  }

  NetBaseEnvironment world;
  FakeNetworkConfiguration configuration;
  FakeStringTable strings;
  std::shared_ptr<FakeConnectionMetricsReader> reader =
      std::make_shared<FakeConnectionMetricsReader>();
  PosixInterfaceResolver resolver{reader, world.netUtils, configuration, strings};
};

TEST_F(PosixInterfaceResolverTest, MakesTheWholeRecordOfAnAdapter) {
  addLink("en0");
  world.kernel.addIPv4Address("en0", {192, 168, 1, 20}, mask24);
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 1});
  const ConnectionMetrics counters{.sentBytes = 1,
                                   .recvBytes = 2,
                                   .sentError = 3,
                                   .recvError = 4,
                                   .sentPacket = 5,
                                   .recvPacket = 6,
                                   .collisions = 7,
                                   .mtu = 9000};
  reader->set("en0", counters);
  configuration.addInterface("en0", ConfiguredInterfaceType::ethernet, "Gigabit Card");

  const BasicInterface expected{.active = true,
                                .displayName = "Gigabit Card",
                                .metrics = counters,
                                .name = "en0",
                                .type = InterfaceType::ethernet,
                                .supportsIPv4 = true,
                                .IPv4 = {{.address = "192.168.1.20",
                                          .netmask = "255.255.255.0",
                                          .gateway = "192.168.1.1",
                                          .cidr = "192.168.1.1/24"}},
                                .supportsIPv6 = false,
                                .IPv6 = {},
                                .hwAddress = "02:42:AC:11:00:02"};
  EXPECT_THAT(resolver.interfaces(), ElementsAre(expected));
  EXPECT_EQ(resolver.interfaceNamed("en0"), expected);
}

TEST_F(PosixInterfaceResolverTest, InterfaceWithOnlyALinkIsListedAsInactive) {
  addLink("en0");
  const auto interface = resolver.interfaceNamed("en0");
  ASSERT_TRUE(interface);
  EXPECT_FALSE(interface->active);
  EXPECT_FALSE(interface->supportsIPv4);
  EXPECT_THAT(interface->IPv4, IsEmpty());
}

TEST_F(PosixInterfaceResolverTest, InterfaceWithoutLinkCountersIsAbsentFromEveryResult) {
  world.kernel.setAddressEntries(
      {{.name = "en0", .address = IPv4Bytes{10, 0, 0, 1}, .netmask = mask24, .statistics = {}}});
  reader->set("en0", ConnectionMetrics::initial(1500));
  EXPECT_THAT(resolver.interfaces(), IsEmpty());
  EXPECT_THAT(resolver.interfacesExcluding({"lo"}), IsEmpty());
  EXPECT_THAT(resolver.interfacesPrefixed("en"), IsEmpty());
  EXPECT_EQ(resolver.interfaceNamed("en0"), std::nullopt);
  EXPECT_EQ(reader->readCount(), 0U) << "no counters are read for an interface without figures";
}

TEST_F(PosixInterfaceResolverTest, InterfaceThatTheReaderDoesNotKnowIsAbsentFromEveryResult) {
  addLink("en0");
  world.kernel.addLink("en1");
  EXPECT_THAT(namesOf(resolver.interfaces()), ElementsAre("en0"));
  EXPECT_THAT(namesOf(resolver.interfacesExcluding({"lo"})), ElementsAre("en0"));
  EXPECT_THAT(namesOf(resolver.interfacesPrefixed("en")), ElementsAre("en0"));
  EXPECT_EQ(resolver.interfaceNamed("en1"), std::nullopt);
}

TEST_F(PosixInterfaceResolverTest, ReaderThatAlwaysFailsMakesEveryResultEmpty) {
  addLink("en0");
  reader->setFailing(true);
  EXPECT_THAT(resolver.interfaces(), IsEmpty());
  EXPECT_THAT(resolver.interfacesExcluding({}), IsEmpty());
  EXPECT_THAT(resolver.interfacesPrefixed("en"), IsEmpty());
  EXPECT_EQ(resolver.interfaceNamed("en0"), std::nullopt);
}

TEST_F(PosixInterfaceResolverTest, OneFailingReadLeavesOutOneInterface) {
  for (const char* name : {"en0", "en1", "en2"}) addLink(name);
  reader->beforeReading([this] { reader->setFailing(reader->readCount() == 2); });
  EXPECT_THAT(namesOf(resolver.interfaces()), ElementsAre("en0", "en2"));
}

TEST_F(PosixInterfaceResolverTest, CountersAreReadOnceForEveryInterfaceWithLinkCounters) {
  for (const char* name : {"en0", "en1", "en2"}) addLink(name);
  world.kernel.addLink("en3");
  EXPECT_EQ(resolver.interfaces().size(), 3U);
  EXPECT_EQ(reader->readCount(), 4U);
}

TEST_F(PosixInterfaceResolverTest, CountersOfEveryInterfaceAreFresh) {
  for (const char* name : {"en0", "en1"}) addLink(name);
  reader->beforeReading([this] {
    for (const char* name : {"en0", "en1"}) {
      reader->set(name, {.recvBytes = reader->readCount(), .mtu = 1500});
    }
  });
  const auto interfaces = resolver.interfaces();
  ASSERT_EQ(interfaces.size(), 2U);
  EXPECT_EQ(interfaces[0].metrics.recvBytes, 1U);
  EXPECT_EQ(interfaces[1].metrics.recvBytes, 2U);
}

TEST_F(PosixInterfaceResolverTest, InterfaceNamedReadsTheCountersOnce) {
  for (const char* name : {"en0", "en01", "en02"}) addLink(name);
  EXPECT_TRUE(resolver.interfaceNamed("en0"));
  EXPECT_EQ(reader->readCount(), 1U);
}

TEST_F(PosixInterfaceResolverTest, InterfaceNamedEn0DoesNotReturnEn01) {
  addLink("en01");
  EXPECT_EQ(resolver.interfaceNamed("en0"), std::nullopt);
  addLink("en0");
  EXPECT_EQ(resolver.interfaceNamed("en0")->name, "en0");
}

TEST_F(PosixInterfaceResolverTest, InterfaceNamedWithTheEmptyNameIsNone) {
  addLink("en0");
  EXPECT_EQ(resolver.interfaceNamed(""), std::nullopt);
}

TEST_F(PosixInterfaceResolverTest, InterfaceWithOnlyIPv6AddressesSupportsNone) {
  addLink("en0");
  world.kernel.addIPv6Address("en0", {0x20, 0x01, 0x0D, 0xB8}, mask64);
  const auto interface = resolver.interfaceNamed("en0");
  ASSERT_TRUE(interface);
  EXPECT_FALSE(interface->supportsIPv6);
  EXPECT_THAT(interface->IPv6, IsEmpty());
  EXPECT_FALSE(interface->supportsIPv4);
}

TEST_F(PosixInterfaceResolverTest, SeveralAddressesKeepTheirOrder) {
  addLink("en0");
  world.kernel.addIPv4Address("en0", {10, 0, 0, 9}, mask24);
  world.kernel.addIPv4Address("en0", {10, 0, 0, 2}, mask24);
  const auto interface = resolver.interfaceNamed("en0");
  ASSERT_EQ(interface->IPv4.size(), 2U);
  EXPECT_EQ(interface->IPv4[0].address, "10.0.0.9");
  EXPECT_EQ(interface->IPv4[1].address, "10.0.0.2");
  EXPECT_EQ(interface->IPv4[1].cidr, "0.0.0.0/24");
}

TEST_F(PosixInterfaceResolverTest, WithheldHardwareAddressIsAbsent) {
  world.kernel.addLink("en0", {2, 0, 0, 0, 0, 0});
  reader->set("en0", ConnectionMetrics::initial(1500));
  EXPECT_EQ(resolver.interfaceNamed("en0")->hwAddress, std::nullopt);
}

TEST_F(PosixInterfaceResolverTest, InterfacesListsLoopbackAndTunnelsToo) {
  world.kernel.addLoopback();
  reader->set("lo", ConnectionMetrics::initial(65536));
  addLink("utun0");
  addLink("en0");
  EXPECT_THAT(namesOf(resolver.interfaces()), ElementsAre("en0", "lo", "utun0"));
}

TEST_F(PosixInterfaceResolverTest, InterfacesExcludingComparesExactly) {
  for (const char* name : {"en0", "en01", "en1"}) addLink(name);
  EXPECT_THAT(namesOf(resolver.interfacesExcluding({"en0"})), ElementsAre("en01", "en1"));
  EXPECT_THAT(namesOf(resolver.interfacesExcluding({})), ElementsAre("en0", "en01", "en1"));
}

TEST_F(PosixInterfaceResolverTest, InterfacesPrefixedTakesNamesThatBeginWithIt) {
  for (const char* name : {"en0", "eth0", "en1"}) addLink(name);
  EXPECT_THAT(namesOf(resolver.interfacesPrefixed("en")), ElementsAre("en0", "en1"));
  EXPECT_THAT(namesOf(resolver.interfacesPrefixed("")), ElementsAre("en0", "en1", "eth0"));
}

TEST_F(PosixInterfaceResolverTest, ResultsAreInAscendingOrderOfNames) {
  for (const char* name : {"wlan0", "en10", "en2", "Zen", "br0"}) addLink(name);
  EXPECT_THAT(namesOf(resolver.interfaces()), ElementsAre("Zen", "br0", "en10", "en2", "wlan0"));
}

TEST_F(PosixInterfaceResolverTest, TunnelUnknownToTheSystemGoesByItsName) {
  addLink("utun0");
  const auto interface = resolver.interfaceNamed("utun0");
  EXPECT_EQ(interface->type, InterfaceType::unknown);
  EXPECT_EQ(interface->displayName, "utun0");
}

TEST_F(PosixInterfaceResolverTest, AdapterListIsFetchedOnceForAnOperation) {
  for (const char* name : {"en0", "en1", "en2"}) addLink(name);
  EXPECT_EQ(resolver.interfaces().size(), 3U);
  EXPECT_EQ(configuration.listCount(), 1U);
  EXPECT_TRUE(resolver.interfaceNamed("en1"));
  EXPECT_EQ(configuration.listCount(), 2U);
}

TEST_F(PosixInterfaceResolverTest, OneOperationWalksTheInterfacesOnce) {
  for (const char* name : {"en0", "en1", "en2"}) addLink(name);
  EXPECT_EQ(resolver.interfaces().size(), 3U);
  EXPECT_EQ(world.kernel.fetchCount(Table::addressEntries), 1U);
}

TEST_F(PosixInterfaceResolverTest, RefusingKernelGivesNothing) {
  addLink("en0");
  world.kernel.fail(Table::addressEntries, NetworkKernelError::refused);
  EXPECT_THAT(resolver.interfaces(), IsEmpty());
  EXPECT_EQ(resolver.interfaceNamed("en0"), std::nullopt);
}

TEST_F(PosixInterfaceResolverTest, InterfaceRemovedBetweenWalkAndCountersIsLeftOut) {
  world.kernel.addLink("en0");
  world.kernel.addLink("en1");
  world.kernel.beforeFetching(Table::linkRecords, [this] { world.kernel.removeLink("en1"); });
  PosixInterfaceResolver overKernel(std::make_shared<BsdConnectionMetricsReader>(world.kernel),
                                    world.netUtils, configuration, strings);
  EXPECT_THAT(namesOf(overKernel.interfaces()), ElementsAre("en0"));
}

TEST(PosixInterfaceResolverDeathTest, NeedsACounterReader) {
  const NetBaseEnvironment world;
  const FakeNetworkConfiguration configuration;
  const FakeStringTable strings;
  EXPECT_DEATH(PosixInterfaceResolver(nullptr, world.netUtils, configuration, strings),
               "without a counter reader");
}

}  // namespace
}  // namespace lanternfold
