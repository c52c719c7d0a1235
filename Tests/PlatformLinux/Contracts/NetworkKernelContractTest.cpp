// What every network kernel keeps to, the real one in a namespace and the fake alike.
#include <functional>

#include <gtest/gtest.h>

#include "PlatformLinux/System/LinuxNetworkKernel.h"
#include "Tests/PlatformLinux/System/NamespaceTools.h"
#include "Tests/Support/FakeNetworkKernel.h"

namespace lanternfold::test {
namespace {

/// Two interfaces beside loopback: "en0" with an address and a default route, "en5" with nothing.
struct Subject {
  const NetworkKernel* kernel = nullptr;
  std::function<void()> removeEn5;
};

void withRealKernel(const std::function<void(const Subject&)>& work) {
  inNewNetworkNamespace([&work] {
    ip("link set lo up\nlink add en0 type veth peer name en5\nlink set en0 up\n"
       "link set en5 address 02:42:ac:11:00:05\n"
       "addr add 192.0.2.1/24 dev en0\nroute add default via 192.0.2.254 dev en0 onlink\n");
    const LinuxNetworkKernel kernel;
    work({&kernel, [] { ip("link del en5\n"); }});
  });
}

void withFakeKernel(const std::function<void(const Subject&)>& work) {
  FakeNetworkKernel kernel;
  kernel.addLoopback();
  kernel.addLink("en0");
  kernel.addLink("en5", {0x02, 0x42, 0xAC, 0x11, 0x00, 0x05});
  kernel.addIPv4Address("en0", {192, 0, 2, 1}, {255, 255, 255, 0});
  kernel.addDefaultRoute("en0", {192, 0, 2, 254});
  work({&kernel, [&kernel] { kernel.removeLink("en5"); }});
}

using Runner = void (*)(const std::function<void(const Subject&)>&);

class NetworkKernelContract : public testing::TestWithParam<Runner> {};

INSTANTIATE_TEST_SUITE_P(Kernels, NetworkKernelContract,
                         testing::Values(&withRealKernel, &withFakeKernel),
                         [](const auto& parameter) {
                           return parameter.index == 0 ? "Linux" : "Fake";
                         });

const AddressEntry* entryOf(const std::vector<AddressEntry>& entries, std::string_view name,
                            std::size_t kind) {
  for (const AddressEntry& entry : entries) {
    if (entry.name == name && entry.address && entry.address->index() == kind) return &entry;
  }
  return nullptr;
}

constexpr std::size_t ipv4Kind = 0;
constexpr std::size_t linkKind = 2;

TEST_P(NetworkKernelContract, EveryLinkComesFirstWithAnAddressAndStatistics) {
  GetParam()([](const Subject& subject) {
    const auto reading = subject.kernel->beginReading();
    const auto& entries = reading->addressEntries().value();
    const std::size_t links = reading->linkRecords()->size();
    for (std::size_t position = 0; position < entries.size(); ++position) {
      ASSERT_TRUE(entries[position].name && entries[position].address);
      const bool isLink = entries[position].address->index() == linkKind;
      EXPECT_EQ(isLink, position < links) << position;
      EXPECT_EQ(entries[position].statistics.has_value(), isLink);
      EXPECT_EQ(entries[position].netmask.has_value(), !isLink);
    }
  });
}

TEST_P(NetworkKernelContract, AnAddressHasItsMask) {
  GetParam()([](const Subject& subject) {
    const auto reading = subject.kernel->beginReading();
    const auto* entry = entryOf(reading->addressEntries().value(), "en0", ipv4Kind);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->address, SocketAddress(IPv4Bytes{192, 0, 2, 1}));
    EXPECT_EQ(entry->netmask, SocketAddress(IPv4Bytes{255, 255, 255, 0}));
  });
}

TEST_P(NetworkKernelContract, LinkRecordsAndEntriesAgree) {
  GetParam()([](const Subject& subject) {
    const auto reading = subject.kernel->beginReading();
    const auto& entries = reading->addressEntries().value();
    for (const LinkRecord& link : reading->linkRecords().value()) {
      const auto* entry = entryOf(entries, link.name, linkKind);
      ASSERT_NE(entry, nullptr) << link.name;
      EXPECT_EQ(entry->address, SocketAddress(link.hardwareAddress));
      EXPECT_EQ(entry->statistics->mtu, link.mtu);
      EXPECT_EQ(link.type, link.name == "lo" ? 24 : 6);
      EXPECT_EQ(link.physical, 0);
    }
  });
}

TEST_P(NetworkKernelContract, TheDefaultRouteNamesItsInterface) {
  GetParam()([](const Subject& subject) {
    const auto reading = subject.kernel->beginReading();
    const auto& routes = reading->routes(RouteFamily::ipv4).value();
    ASSERT_EQ(routes.size(), 1U);
    EXPECT_EQ(routes[0].destination, SocketAddress(IPv4Bytes{}));
    EXPECT_EQ(routes[0].gateway, SocketAddress(IPv4Bytes{192, 0, 2, 254}));
    EXPECT_EQ(reading->interfaceName(routes[0].interfaceIndex), "en0");
    EXPECT_TRUE(reading->routes(RouteFamily::ipv6)->empty());
    EXPECT_FALSE(reading->interfaceName(999'999));
  });
}

TEST_P(NetworkKernelContract, AReadingStaysAsItWasAndTheNextOneIsFresh) {
  GetParam()([](const Subject& subject) {
    const auto reading = subject.kernel->beginReading();
    const auto before = reading->addressEntries().value();
    EXPECT_NE(entryOf(before, "en5", linkKind), nullptr);
    subject.removeEn5();
    EXPECT_EQ(reading->addressEntries().value(), before);
    const auto later = subject.kernel->beginReading();
    EXPECT_EQ(entryOf(later->addressEntries().value(), "en5", linkKind), nullptr);
  });
}

}  // namespace
}  // namespace lanternfold::test
