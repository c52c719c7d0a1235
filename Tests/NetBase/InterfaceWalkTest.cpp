// The walk over the kernel's interfaces, as `SNUtils` answers it.
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/NetBaseEnvironment.h"

namespace lanternfold {
namespace {

using Dictionary = PropertyListDictionary;
using Table = FakeNetworkKernel::Table;
using testing::UnorderedElementsAre;

const IPv4Bytes mask24{255, 255, 255, 0};
const IPv6Bytes mask64{255, 255, 255, 255, 255, 255, 255, 255};
const IPv6Bytes globalIPv6{0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x35};

class InterfaceWalkTest : public testing::Test {
 protected:
  [[nodiscard]] InterfaceNameMap<Dictionary> walk() const {
    return world.snUtils.inetInterfacesWithPrefix({}, {});
  }

  [[nodiscard]] std::vector<std::string> names(
      std::optional<std::string_view> prefix,
      const std::optional<std::vector<std::string>>& excluding) const {
    std::vector<std::string> result;
    for (const auto& [name, interface] :
         world.snUtils.inetInterfacesWithPrefix(prefix, excluding)) {
      result.push_back(name);
    }
    return result;
  }

  NetBaseEnvironment world;
};

Dictionary addressDictionary(const char* ip, const char* netmask, const char* gateway, int prefix,
                             const char* cidr) {
  return {{"ip", ip},
          {"netmask", netmask},
          {"gateway", gateway},
          {"prefix", static_cast<std::uint64_t>(prefix)},
          {"cidr", cidr}};
}

TEST_F(InterfaceWalkTest, TellsNameActivityAddressesAndMetricsOfAnAdapter) {
  world.kernel.addLink("en0");
  world.kernel.setCounters("en0", {.recvBytes = 10,
                                   .sentBytes = 20,
                                   .recvPackets = 3,
                                   .sentPackets = 4,
                                   .recvErrors = 5,
                                   .sentErrors = 6,
                                   .collisions = 7});
  world.kernel.addIPv4Address("en0", {192, 168, 1, 20}, mask24);
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 1});

  const auto interfaces = walk();

  const Dictionary metrics{{"type", std::uint64_t{6}},         {"physical", std::uint64_t{0}},
                           {"baudrate", std::uint64_t{0}},     {"mtu", std::uint64_t{1500}},
                           {"recv_bytes", std::uint64_t{10}},  {"sent_bytes", std::uint64_t{20}},
                           {"recv_packets", std::uint64_t{3}}, {"sent_packets", std::uint64_t{4}},
                           {"recv_errors", std::uint64_t{5}},  {"sent_errors", std::uint64_t{6}},
                           {"collisions", std::uint64_t{7}},   {"hw_address", "02:42:AC:11:00:02"}};
  const Dictionary expected{
      {"name", "en0"},
      {"active", true},
      {"ipv4", PropertyListArray{addressDictionary("192.168.1.20", "255.255.255.0", "192.168.1.1",
                                                   24, "192.168.1.1/24")}},
      {"ipv6", PropertyListArray{}},
      {"metrics", metrics}};
  ASSERT_EQ(interfaces.size(), 1U);
  EXPECT_EQ(interfaces.at("en0"), expected);
}

TEST_F(InterfaceWalkTest, InterfaceWithOnlyALinkEntryIsInactiveWithMetrics) {
  world.kernel.addLink("en0");
  const auto interface = walk().at("en0");
  EXPECT_EQ(*interface.find("active"), PropertyListValue(false));
  EXPECT_EQ(*interface.find("ipv4"), PropertyListValue(PropertyListArray{}));
  EXPECT_EQ(*interface.find("ipv6"), PropertyListValue(PropertyListArray{}));
  EXPECT_EQ(*interface.find("metrics")->asDictionary()->find("mtu"),
            PropertyListValue(std::uint64_t{1500}));
}

TEST_F(InterfaceWalkTest, InterfaceFirstSeenThroughAnIPv4EntryStartsActive) {
  // The address is left out for want of a mask, so that nothing but the order makes it active.
  world.kernel.setAddressEntries(
      {{.name = "en0", .address = IPv4Bytes{10, 0, 0, 1}, .netmask = {}, .statistics = {}},
       {.name = "en0", .address = LinkAddress{}, .netmask = {}, .statistics = LinkStatistics32{}}});
  const auto interface = walk().at("en0");
  EXPECT_EQ(*interface.find("active"), PropertyListValue(true));
  EXPECT_EQ(*interface.find("ipv4"), PropertyListValue(PropertyListArray{}));
}

TEST_F(InterfaceWalkTest, InterfaceFirstSeenThroughAnIPv6EntryStartsActiveWithoutAddresses) {
  world.kernel.setAddressEntries(
      {{.name = "en0", .address = globalIPv6, .netmask = mask64, .statistics = {}}});
  const auto interface = walk().at("en0");
  EXPECT_EQ(*interface.find("active"), PropertyListValue(true));
  EXPECT_EQ(*interface.find("ipv6"), PropertyListValue(PropertyListArray{}));
}

TEST_F(InterfaceWalkTest, IPv6ListIsEmptyEvenWithGlobalAddresses) {
  world.kernel.addLink("en0");
  world.kernel.addIPv6Address("en0", globalIPv6, mask64);
  const auto interface = walk().at("en0");
  EXPECT_EQ(*interface.find("ipv6"), PropertyListValue(PropertyListArray{}));
  EXPECT_EQ(*interface.find("active"), PropertyListValue(false))
      << "an IPv6 address makes nothing active";
}

TEST_F(InterfaceWalkTest, InterfaceWithoutALinkRecordHasEmptyMetrics) {
  world.kernel.setAddressEntries(
      {{.name = "en7", .address = IPv4Bytes{10, 0, 0, 1}, .netmask = mask24, .statistics = {}}});
  EXPECT_EQ(*walk().at("en7").find("metrics"), PropertyListValue(Dictionary{}));
}

TEST_F(InterfaceWalkTest, KeepsTheOrderOfAnInterfacesAddresses) {
  world.kernel.addLink("en0");
  world.kernel.addIPv4Address("en0", {10, 0, 0, 9}, mask24);
  world.kernel.addIPv4Address("en0", {10, 0, 0, 2}, {255, 255, 255, 255});
  const auto interface = walk().at("en0");
  const PropertyListArray expected{
      addressDictionary("10.0.0.9", "255.255.255.0", "0.0.0.0", 24, "0.0.0.0/24"),
      addressDictionary("10.0.0.2", "255.255.255.255", "0.0.0.0", 32, "0.0.0.0/32")};
  EXPECT_EQ(*interface.find("ipv4"), PropertyListValue(expected));
}

TEST_F(InterfaceWalkTest, AddressesInAnotherOrderThanTheLinksReachTheirInterfaces) {
  for (const char* name : {"a0", "b0", "c0", "d0"}) world.kernel.addLink(name);
  for (const char* name : {"d0", "a0", "c0", "b0", "d0"}) {
    world.kernel.addIPv4Address(name, {10, 0, 0, static_cast<std::uint8_t>(name[0])}, mask24);
  }
  const auto interfaces = walk();
  ASSERT_EQ(interfaces.size(), 4U);
  const std::map<std::string, std::size_t> expected{{"a0", 1}, {"b0", 1}, {"c0", 1}, {"d0", 2}};
  for (const auto& [name, count] : expected) {
    const auto& addresses = *interfaces.at(name).find("ipv4")->asArray();
    ASSERT_EQ(addresses.size(), count) << name;
    const std::string ip = "10.0.0." + std::to_string(name[0]);
    EXPECT_EQ(*addresses.front().asDictionary()->find("ip"), PropertyListValue(ip));
    EXPECT_EQ(*interfaces.at(name).find("name"), PropertyListValue(name));
    EXPECT_FALSE(interfaces.at(name).find("metrics")->asDictionary()->empty()) << name;
  }
}

TEST_F(InterfaceWalkTest, BlockIsGatewaySlashPrefix) {
  world.kernel.addLink("en0");
  world.kernel.addIPv4Address("en0", {192, 168, 1, 20}, mask24);
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 1});
  const auto interface = walk().at("en0");
  const Dictionary* address = interface.find("ipv4")->asArray()->front().asDictionary();
  EXPECT_EQ(*address->find("cidr"), PropertyListValue("192.168.1.1/24"));
}

TEST_F(InterfaceWalkTest, EmptyRoutingTableGivesGatewayZeroAndBlockZero) {
  world.kernel.addLink("en0");
  world.kernel.addIPv4Address("en0", {192, 168, 1, 20}, mask24);
  const auto interface = walk().at("en0");
  const Dictionary* address = interface.find("ipv4")->asArray()->front().asDictionary();
  EXPECT_EQ(*address->find("gateway"), PropertyListValue("0.0.0.0"));
  EXPECT_EQ(*address->find("cidr"), PropertyListValue("0.0.0.0/24"));
}

TEST_F(InterfaceWalkTest, FailingRoutingTableGivesGatewayZero) {
  world.kernel.addLink("en0");
  world.kernel.addIPv4Address("en0", {192, 168, 1, 20}, mask24);
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 1});
  world.kernel.fail(Table::ipv4Routes, NetworkKernelError::refused);
  const auto interface = walk().at("en0");
  const Dictionary* address = interface.find("ipv4")->asArray()->front().asDictionary();
  EXPECT_EQ(*address->find("gateway"), PropertyListValue("0.0.0.0"));
  EXPECT_EQ(*interface.find("active"), PropertyListValue(true));
}

TEST_F(InterfaceWalkTest, EmptyPrefixMatchesEveryName) {
  world.kernel.addLoopback();
  world.kernel.addLink("en0");
  EXPECT_THAT(names("", {}), UnorderedElementsAre("lo", "en0"));
}

TEST_F(InterfaceWalkTest, NoPrefixMatchesEveryName) {
  world.kernel.addLoopback();
  world.kernel.addLink("en0");
  EXPECT_THAT(names({}, {}), UnorderedElementsAre("lo", "en0"));
}

TEST_F(InterfaceWalkTest, PrefixIsComparedWithCase) {
  world.kernel.addLink("en0");
  world.kernel.addLink("EN1");
  world.kernel.addLink("ben2");
  EXPECT_THAT(names("en", {}), UnorderedElementsAre("en0"));
}

TEST_F(InterfaceWalkTest, ExcludingEn0DoesNotRemoveEn01) {
  world.kernel.addLink("en0");
  world.kernel.addLink("en01");
  world.kernel.addLink("En0");
  EXPECT_THAT(names({}, std::vector<std::string>{"en0", "missing"}),
              UnorderedElementsAre("en01", "En0"));
}

TEST_F(InterfaceWalkTest, EmptyExclusionListRemovesNothing) {
  world.kernel.addLink("en0");
  EXPECT_THAT(names({}, std::vector<std::string>{}), UnorderedElementsAre("en0"));
}

TEST_F(InterfaceWalkTest, PrefixAndExclusionWorkTogether) {
  world.kernel.addLoopback();
  world.kernel.addLink("en0");
  world.kernel.addLink("en1");
  EXPECT_THAT(names("en", std::vector<std::string>{"en1"}), UnorderedElementsAre("en0"));
}

TEST_F(InterfaceWalkTest, AddressWithoutNetmaskIsLeftOut) {
  world.kernel.addLink("en0");
  world.kernel.addAddress("en0", IPv4Bytes{10, 0, 0, 1}, std::nullopt);
  const auto interface = walk().at("en0");
  EXPECT_EQ(*interface.find("ipv4"), PropertyListValue(PropertyListArray{}));
  EXPECT_EQ(*interface.find("active"), PropertyListValue(false));
}

TEST_F(InterfaceWalkTest, AddressWithAMaskOfAnotherFamilyIsLeftOut) {
  world.kernel.addLink("en0");
  world.kernel.addAddress("en0", IPv4Bytes{10, 0, 0, 1}, mask64);
  EXPECT_EQ(*walk().at("en0").find("ipv4"), PropertyListValue(PropertyListArray{}));
}

TEST_F(InterfaceWalkTest, EntryWithoutAddressIsSkipped) {
  world.kernel.setAddressEntries(
      {{.name = "tun0", .address = {}, .netmask = {}, .statistics = {}}});
  EXPECT_TRUE(walk().empty());
}

TEST_F(InterfaceWalkTest, EntryWithoutNameIsSkipped) {
  world.kernel.setAddressEntries(
      {{.name = {}, .address = IPv4Bytes{10, 0, 0, 1}, .netmask = mask24, .statistics = {}}});
  EXPECT_TRUE(walk().empty());
}

TEST_F(InterfaceWalkTest, EntryOfAnotherFamilyIsSkipped) {
  world.kernel.setAddressEntries(
      {{.name = "x0", .address = OtherAddress{}, .netmask = {}, .statistics = {}}});
  EXPECT_TRUE(walk().empty());
}

TEST_F(InterfaceWalkTest, NoEntriesGiveNoInterfaces) { EXPECT_TRUE(walk().empty()); }

TEST_F(InterfaceWalkTest, RefusedAddressListGivesNoInterfaces) {
  world.kernel.addLink("en0");
  world.kernel.fail(Table::addressEntries, NetworkKernelError::refused);
  EXPECT_TRUE(walk().empty());
}

TEST_F(InterfaceWalkTest, RefusedLinkListLeavesTheMetricsEmpty) {
  world.kernel.addLink("en0");
  world.kernel.fail(Table::linkRecords, NetworkKernelError::malformed);
  EXPECT_EQ(*walk().at("en0").find("metrics"), PropertyListValue(Dictionary{}));
}

TEST_F(InterfaceWalkTest, InterfaceGoneBetweenTheTwoDumpsHasEmptyMetrics) {
  world.kernel.addLink("en0");
  world.kernel.addLink("en1");
  world.kernel.beforeFetching(Table::linkRecords, [this] { world.kernel.removeLink("en1"); });
  const auto interfaces = walk();
  EXPECT_EQ(*interfaces.at("en1").find("metrics"), PropertyListValue(Dictionary{}));
  EXPECT_NE(*interfaces.at("en0").find("metrics"), PropertyListValue(Dictionary{}));
}

TEST_F(InterfaceWalkTest, InterfaceRenamedBetweenTheTwoDumpsHasEmptyMetrics) {
  world.kernel.addLink("en0");
  world.kernel.beforeFetching(Table::linkRecords,
                              [this] { world.kernel.renameLink("en0", "en9"); });
  const auto interfaces = walk();
  ASSERT_EQ(interfaces.size(), 1U);
  EXPECT_EQ(*interfaces.at("en0").find("metrics"), PropertyListValue(Dictionary{}));
}

TEST_F(InterfaceWalkTest, OneWalkFetchesEachTableOnceHoweverManyInterfaces) {
  for (int i = 0; i < 50; ++i) {
    const std::string name = "en" + std::to_string(i);
    world.kernel.addLink(name);
    world.kernel.addIPv4Address(name, {10, 0, 0, 1}, mask24);
    world.kernel.addDefaultRoute(name, {10, 0, 0, 254});
  }
  EXPECT_EQ(walk().size(), 50U);
  EXPECT_EQ(world.kernel.readingCount(), 1U);
  EXPECT_EQ(world.kernel.fetchCount(Table::addressEntries), 1U);
  EXPECT_EQ(world.kernel.fetchCount(Table::linkRecords), 1U);
  EXPECT_EQ(world.kernel.fetchCount(Table::ipv4Routes), 1U);
  EXPECT_EQ(world.kernel.fetchCount(Table::ipv6Routes), 0U);
}

TEST_F(InterfaceWalkTest, EveryWalkLooksAfresh) {
  world.kernel.addLink("en0");
  EXPECT_EQ(walk().size(), 1U);
  world.kernel.addLink("en1");
  EXPECT_EQ(walk().size(), 2U);
  world.kernel.removeLink("en0");
  EXPECT_EQ(walk().count("en0"), 0U);
}

TEST_F(InterfaceWalkTest, WideningNamingDecidesWhichNamesBelong) {
  class SuffixNaming final : public InterfaceNaming {
   public:
    std::function<bool(std::string_view)> matcher(std::string_view prefix) const override {
      return [prefix = std::string(prefix)](std::string_view name) {
        return name.starts_with(prefix) || (prefix == "en" && name == "eth0");
      };
    }
  };
  const SuffixNaming naming;
  const SNUtils utils(world.kernel, world.resolver, naming, world.log);
  world.kernel.addLink("eth0");
  world.kernel.addLink("docker0");
  const auto interfaces = utils.inetInterfacesWithPrefix("en", {});
  EXPECT_EQ(interfaces.size(), 1U);
  EXPECT_EQ(interfaces.count("eth0"), 1U);
}

}  // namespace
}  // namespace lanternfold
