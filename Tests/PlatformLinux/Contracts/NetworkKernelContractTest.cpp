// What every network kernel keeps to, the real one in a namespace and the fake alike.
#include <cerrno>

#include <gtest/gtest.h>

#include "PlatformLinux/System/LinuxNetworkKernel.h"
#include "PlatformLinux/System/LinuxNetworkKernelReading.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/ScriptedNetlink.h"
#include "Tests/PlatformLinux/System/NamespaceTools.h"
#include "Tests/Support/FakeNetworkKernel.h"

namespace lanternfold::test {
namespace {

// Both worlds have two interfaces beside loopback: "en0" with an address of either family and a
// default route of either, and "en5" with nothing. The tunnel "tun9" has no hardware address.

class LinuxKernelWorld {
 public:
  void open() {
    ENTER_NETWORK_NAMESPACE(network_);
    ip("link set lo up\nlink add en0 type veth peer name en5\nlink set en0 up\n"
       "link set en5 address 02:42:ac:11:00:05\ntuntap add dev tun9 mode tun\n"
       "addr add 192.0.2.1/24 dev en0\nroute add default via 192.0.2.254 dev en0 onlink\n"
       "addr add 2001:db8::1/64 dev en0 nodad\n"
       "route add default via 2001:db8::fe dev en0 onlink\n");
  }
  [[nodiscard]] const NetworkKernel& kernel() const { return kernel_; }
  void removeEn5() { ip("link del en5\n"); }
  void addSecondDefaultRoute() {
    ip("route add default via 192.0.2.253 dev en0 onlink metric 50\n");
  }
  /// A kernel that answers like one behind a sandbox.
  [[nodiscard]] std::unique_ptr<NetworkKernelReading> refusedReading() {
    refusing_.answer({{errorMessage(EPERM)}});
    return std::make_unique<LinuxNetworkKernelReading>(
        std::make_shared<NetlinkSocketPool>(refusing_.opener()),
        std::make_shared<LinuxNetworkKernelReading::TableSizes>());
  }

 private:
  std::unique_ptr<NetworkNamespace> network_;
  LinuxNetworkKernel kernel_;
  ScriptedNetlink refusing_;
};

class FakeKernelWorld {
 public:
  void open() {
    kernel_.addLoopback();
    en0_ = kernel_.addLink("en0");
    kernel_.addLink("en5", {0x02, 0x42, 0xAC, 0x11, 0x00, 0x05});
    kernel_.addLink(LinkRecord{.name = "tun9", .type = 1, .mtu = 1500});
    kernel_.addIPv4Address("en0", {192, 0, 2, 1}, {255, 255, 255, 0});
    kernel_.addIPv6Address("en0", ipv6Address, ipv6Mask);
    kernel_.addDefaultRoute("en0", {192, 0, 2, 254});
    kernel_.addRoute(RouteFamily::ipv6, {IPv6Bytes{}, ipv6Router, en0_});
    kernel_.setBootTime(std::chrono::system_clock::now() - std::chrono::hours(1));
  }
  [[nodiscard]] const NetworkKernel& kernel() const { return kernel_; }
  void removeEn5() { kernel_.removeLink("en5"); }
  void addSecondDefaultRoute() {
    // As the kernel dumps them: by metric, the smallest first.
    kernel_.clearRoutes();
    for (const std::uint8_t last : secondRouteOrder) {
      kernel_.addDefaultRoute("en0", {192, 0, 2, last});
    }
  }
  [[nodiscard]] std::unique_ptr<NetworkKernelReading> refusedReading() {
    using Table = FakeNetworkKernel::Table;
    for (const Table table : {Table::addressEntries, Table::linkRecords, Table::ipv4Routes,
                              Table::ipv6Routes, Table::interfaceNames}) {
      kernel_.fail(table, NetworkKernelError::refused);
    }
    return kernel_.beginReading();
  }

  static constexpr IPv6Bytes ipv6Address{0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0,
                                         0,    0,    0,    0,    0, 0, 0, 1};
  static constexpr IPv6Bytes ipv6Router{0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0,
                                        0,    0,    0,    0,    0, 0, 0, 0xFE};
  static constexpr IPv6Bytes ipv6Mask{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  static constexpr std::array<std::uint8_t, 2> secondRouteOrder{254, 253};

 private:
  FakeNetworkKernel kernel_;
  std::uint32_t en0_ = 0;
};

template <typename World>
class NetworkKernelContract : public testing::Test {
 protected:
  void SetUp() override { world_.open(); }

  [[nodiscard]] std::unique_ptr<NetworkKernelReading> reading() const {
    return world_.kernel().beginReading();
  }

  World world_;
};

using Worlds = testing::Types<LinuxKernelWorld, FakeKernelWorld>;

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxKernelWorld> ? "Linux" : "Fake";
  }
};

TYPED_TEST_SUITE(NetworkKernelContract, Worlds, WorldNames);

const AddressEntry* entryOf(const std::vector<AddressEntry>& entries, std::string_view name,
                            std::size_t kind) {
  for (const AddressEntry& entry : entries) {
    if (entry.name == name && entry.address && entry.address->index() == kind) return &entry;
  }
  return nullptr;
}

constexpr std::size_t ipv4Kind = 0;
constexpr std::size_t ipv6Kind = 1;
constexpr std::size_t linkKind = 2;

TYPED_TEST(NetworkKernelContract, EveryLinkComesFirstWithAnAddressAndStatistics) {
  const auto reading = this->reading();
  const auto& entries = reading->addressEntries().value();
  const std::size_t links = reading->linkRecords()->size();
  for (std::size_t position = 0; position < entries.size(); ++position) {
    ASSERT_TRUE(entries[position].name && entries[position].address);
    const bool isLink = entries[position].address->index() == linkKind;
    EXPECT_EQ(isLink, position < links) << position;
    EXPECT_EQ(entries[position].statistics.has_value(), isLink);
    EXPECT_EQ(entries[position].netmask.has_value(), !isLink);
  }
}

TYPED_TEST(NetworkKernelContract, AnAddressHasItsMask) {
  const auto reading = this->reading();
  const auto* entry = entryOf(reading->addressEntries().value(), "en0", ipv4Kind);
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->address, SocketAddress(IPv4Bytes{192, 0, 2, 1}));
  EXPECT_EQ(entry->netmask, SocketAddress(IPv4Bytes{255, 255, 255, 0}));
}

TYPED_TEST(NetworkKernelContract, LinkRecordsAndEntriesAgree) {
  const auto reading = this->reading();
  const auto& entries = reading->addressEntries().value();
  for (const LinkRecord& link : reading->linkRecords().value()) {
    const auto* entry = entryOf(entries, link.name, linkKind);
    ASSERT_NE(entry, nullptr) << link.name;
    EXPECT_EQ(entry->address, SocketAddress(link.hardwareAddress));
    EXPECT_EQ(entry->statistics->mtu, link.mtu);
    EXPECT_EQ(link.type, link.name == "lo" ? 24 : link.name == "tun9" ? 1 : 6);
    EXPECT_EQ(link.physical, 0);
  }
}

TYPED_TEST(NetworkKernelContract, TheDefaultRouteNamesItsInterface) {
  const auto reading = this->reading();
  const auto& routes = reading->routes(RouteFamily::ipv4).value();
  ASSERT_EQ(routes.size(), 1U);
  EXPECT_EQ(routes[0].destination, SocketAddress(IPv4Bytes{}));
  EXPECT_EQ(routes[0].gateway, SocketAddress(IPv4Bytes{192, 0, 2, 254}));
  EXPECT_EQ(reading->interfaceName(routes[0].interfaceIndex), "en0");
  EXPECT_FALSE(reading->interfaceName(999'999));
}

TYPED_TEST(NetworkKernelContract, AReadingStaysAsItWasAndTheNextOneIsFresh) {
  const auto reading = this->reading();
  const auto before = reading->addressEntries().value();
  EXPECT_NE(entryOf(before, "en5", linkKind), nullptr);
  this->world_.removeEn5();
  EXPECT_EQ(reading->addressEntries().value(), before);
  const auto later = this->reading();
  EXPECT_EQ(entryOf(later->addressEntries().value(), "en5", linkKind), nullptr);
}

TYPED_TEST(NetworkKernelContract, AnIPv6AddressHasItsMask) {
  const auto reading = this->reading();
  bool isFound = false;
  for (const AddressEntry& entry : reading->addressEntries().value()) {
    if (entry.address != SocketAddress(FakeKernelWorld::ipv6Address)) continue;
    isFound = true;
    EXPECT_EQ(entry.name, "en0");
    EXPECT_EQ(entry.netmask, SocketAddress(FakeKernelWorld::ipv6Mask));
  }
  EXPECT_TRUE(isFound);
  EXPECT_NE(entryOf(reading->addressEntries().value(), "lo", ipv6Kind), nullptr);
}

TYPED_TEST(NetworkKernelContract, TheIPv6DefaultRouteNamesItsInterface) {
  const auto reading = this->reading();
  const auto& routes = reading->routes(RouteFamily::ipv6).value();
  ASSERT_EQ(routes.size(), 1U);
  EXPECT_EQ(routes[0].destination, SocketAddress(IPv6Bytes{}));
  EXPECT_EQ(routes[0].gateway, SocketAddress(FakeKernelWorld::ipv6Router));
  EXPECT_EQ(reading->interfaceName(routes[0].interfaceIndex), "en0");
}

TYPED_TEST(NetworkKernelContract, TwoDefaultRoutesOfOneInterfaceComeInDumpOrder) {
  this->world_.addSecondDefaultRoute();
  const auto reading = this->reading();
  std::vector<SocketAddress> gateways;
  for (const RouteRecord& route : reading->routes(RouteFamily::ipv4).value()) {
    EXPECT_EQ(reading->interfaceName(route.interfaceIndex), "en0");
    gateways.push_back(route.gateway.value());
  }
  std::vector<SocketAddress> expected;
  for (const std::uint8_t last : FakeKernelWorld::secondRouteOrder) {
    expected.emplace_back(IPv4Bytes{192, 0, 2, last});
  }
  EXPECT_EQ(gateways, expected);
}

TYPED_TEST(NetworkKernelContract, ATunnelHasAnAddressOfZeroBytes) {
  const auto reading = this->reading();
  const auto* entry = entryOf(reading->addressEntries().value(), "tun9", linkKind);
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->address, SocketAddress(LinkAddress{}));
}

TYPED_TEST(NetworkKernelContract, ARefusedTableIsRefused) {
  const auto reading = this->world_.refusedReading();
  EXPECT_EQ(reading->addressEntries(), std::unexpected(NetworkKernelError::refused));
  EXPECT_EQ(reading->linkRecords(), std::unexpected(NetworkKernelError::refused));
  EXPECT_EQ(reading->routes(RouteFamily::ipv4), std::unexpected(NetworkKernelError::refused));
  EXPECT_EQ(reading->routes(RouteFamily::ipv6), std::unexpected(NetworkKernelError::refused));
  EXPECT_EQ(reading->interfaceName(1), std::nullopt);
}

TYPED_TEST(NetworkKernelContract, TheBootTimeIsPastAndDoesNotMove) {
  const auto moment = this->world_.kernel().bootTime();
  ASSERT_TRUE(moment);
  EXPECT_LT(*moment, std::chrono::system_clock::now());
  EXPECT_EQ(this->world_.kernel().bootTime(), moment);
}

}  // namespace
}  // namespace lanternfold::test
