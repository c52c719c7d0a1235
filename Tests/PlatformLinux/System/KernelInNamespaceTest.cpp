// The kernel's tables against the real kernel, compared with iproute2.
#include <arpa/inet.h>
#include <atomic>
#include <functional>
#include <ifaddrs.h>
#include <net/if.h>
#include <set>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "PlatformLinux/System/LinuxNetworkKernel.h"
#include "Tests/PlatformLinux/System/NamespaceTools.h"
#include "Tests/PlatformLinux/System/TapLink.h"

namespace lanternfold::test {
namespace {

using nlohmann::json;

std::string macText(const LinkAddress& address) {
  std::string text;
  for (const std::uint8_t byte : address.bytes) {
    std::array<char, 4> part{};
    std::snprintf(part.data(), part.size(), "%s%02x", text.empty() ? "" : ":", byte);
    text += part.data();
  }
  return text;
}

std::string addressText(const SocketAddress& address) {
  std::array<char, INET6_ADDRSTRLEN> text{};
  if (const auto* ipv4 = std::get_if<IPv4Bytes>(&address)) {
    inet_ntop(AF_INET, ipv4->data(), text.data(), text.size());
  } else if (const auto* ipv6 = std::get_if<IPv6Bytes>(&address)) {
    inet_ntop(AF_INET6, ipv6->data(), text.data(), text.size());
  }
  return text.data();
}

int onesOf(const SocketAddress& mask) {
  int ones = 0;
  const auto count = [&ones](const auto& bytes) {
    for (const std::uint8_t byte : bytes) ones += std::popcount(byte);
  };
  if (const auto* ipv4 = std::get_if<IPv4Bytes>(&mask)) count(*ipv4);
  if (const auto* ipv6 = std::get_if<IPv6Bytes>(&mask)) count(*ipv6);
  return ones;
}

void makeManyKinds() {
  ip("link set lo up\n"
     "link add en0 type veth peer name eth0\n"
     "link add en1 type bridge\n"
     "link add en01 type ifb\n"
     "link add en5 type vxlan id 5 dstport 4789 remote 192.0.2.9\n"
     "link add link en0 name mv0 type macvlan\n"
     "link set eth0 master en1\n"
     "link set en0 up mtu 1400\nlink set eth0 up\n"
     "addr add 192.0.2.1/24 dev en0\naddr add 192.0.2.2/24 dev en0\n"
     "addr add 198.51.100.1 peer 198.51.100.9/32 dev en1\n"
     "addr add 203.0.113.1/29 label en0:alias dev en0\n"
     "addr add 2001:db8::1/64 dev en0 nodad\n"
     "route add default via 192.0.2.253 dev en0 metric 50\n"
     "route add default via 192.0.2.254 dev en0 metric 100\n"
     "route add 198.51.100.128/25 dev en0\n"
     "route add blackhole 203.0.113.128/25\n"
     "route add default via 192.0.2.250 dev en0 table 100\n");
}

struct Settled {
  std::unique_ptr<NetworkKernelReading> reading;
  std::string answer;
};

/// A whole reading that was taken between two equal answers of `ask`: links that are up give
/// themselves IPv6 addresses and send a few packets at moments of their own.
Settled readBetweenEqualAnswers(const std::function<std::string()>& ask) {
  constexpr int mostRounds = 200;
  for (int round = 0; round < mostRounds; ++round) {
    Settled settled{.reading = LinuxNetworkKernel().beginReading(), .answer = ask()};
    const bool isWhole = settled.reading->linkRecords() && settled.reading->addressEntries() &&
                         settled.reading->routes(RouteFamily::ipv4) &&
                         settled.reading->routes(RouteFamily::ipv6);
    if (!isWhole) throw std::runtime_error("A table could not be read");
    if (ask() == settled.answer) return settled;
  }
  throw std::runtime_error("The namespace did not come to rest");
}

TEST(KernelInNamespace, LinksAreWhatIproute2Lists) {
  inNewNetworkNamespace([] {
    makeManyKinds();
    TapLink tap("tap0");
    ip("link set tap0 up\n");
    tap.write(100);
    const auto [reading, answer] =
        readBetweenEqualAnswers([] { return ipOutput("-j -d -s -s link"); });
    const json expected = json::parse(answer);
    const auto& links = reading->linkRecords().value();
    ASSERT_EQ(links.size(), expected.size());
    for (std::size_t position = 0; position < links.size(); ++position) {
      const LinkRecord& link = links[position];
      const json& other = expected[position];
      SCOPED_TRACE(link.name);
      EXPECT_EQ(link.name, other["ifname"].get<std::string>());
      EXPECT_EQ(link.index, other["ifindex"].get<std::uint64_t>());
      EXPECT_EQ(macText(link.hardwareAddress), other["address"].get<std::string>());
      EXPECT_EQ(link.mtu, other["mtu"].get<std::uint64_t>());
      EXPECT_EQ(link.type, other["link_type"] == "loopback" ? 24 : 6);
      EXPECT_EQ(link.physical, 0);
      EXPECT_EQ(link.recvBytes, other["stats64"]["rx"]["bytes"].get<std::uint64_t>());
      EXPECT_EQ(link.recvPackets, other["stats64"]["rx"]["packets"].get<std::uint64_t>());
      EXPECT_EQ(link.recvErrors, other["stats64"]["rx"]["errors"].get<std::uint64_t>());
      EXPECT_EQ(link.sentBytes, other["stats64"]["tx"]["bytes"].get<std::uint64_t>());
      EXPECT_EQ(link.sentPackets, other["stats64"]["tx"]["packets"].get<std::uint64_t>());
      EXPECT_EQ(link.sentErrors, other["stats64"]["tx"]["errors"].get<std::uint64_t>());
      EXPECT_EQ(link.collisions, other["stats64"]["tx"]["collisions"].get<std::uint64_t>());
      EXPECT_EQ(reading->interfaceName(link.index), link.name);
    }
    EXPECT_FALSE(reading->interfaceName(0));
    EXPECT_FALSE(reading->interfaceName(999'999));
  });
}

TEST(KernelInNamespace, ATapHasTheSpeedThatItsDriverTells) {
  inNewNetworkNamespace([] {
    const TapLink tap("tap0");
    const auto reading = LinuxNetworkKernel().beginReading();
    for (const LinkRecord& link : reading->linkRecords().value()) {
      if (link.name == "tap0") {
        EXPECT_GE(link.baudrate, 10'000'000U);
      } else {
        EXPECT_EQ(link.baudrate, 0U) << link.name;
      }
    }
  });
}

TEST(KernelInNamespace, AddressesAreWhatIproute2Lists) {
  inNewNetworkNamespace([] {
    makeManyKinds();
    const auto [reading, answer] = readBetweenEqualAnswers([] { return ipOutput("-j addr"); });
    std::multiset<std::string> seen;
    for (const AddressEntry& entry : reading->addressEntries().value()) {
      if (!entry.netmask) continue;
      seen.insert(*entry.name + " " + addressText(*entry.address) + "/" +
                  std::to_string(onesOf(*entry.netmask)));
    }
    std::multiset<std::string> expected;
    for (const json& link : json::parse(answer)) {
      for (const json& address : link["addr_info"]) {
        expected.insert(link["ifname"].get<std::string>() + " " +
                        address["local"].get<std::string>() + "/" +
                        std::to_string(address["prefixlen"].get<int>()));
      }
    }
    EXPECT_EQ(seen, expected);
    EXPECT_TRUE(seen.contains("en1 198.51.100.1/32")) << "this machine's end, not the peer's";
    EXPECT_TRUE(seen.contains("en0 203.0.113.1/29")) << "the interface's name, not the label";
  });
}

/// A line for each entry.
std::string namesOfTheSystemsOwnList() {
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) throw std::runtime_error("The system's own list could not be read");
  std::string names;
  for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
    names += std::string(entry->ifa_name) + "\n";
  }
  freeifaddrs(list);
  return names;
}

TEST(KernelInNamespace, EntriesStandInTheOrderOfTheSystemsOwnList) {
  inNewNetworkNamespace([] {
    makeManyKinds();
    ip("addr del 203.0.113.1/29 dev en0\n");
    const auto [reading, expected] = readBetweenEqualAnswers(namesOfTheSystemsOwnList);
    std::string names;
    for (const AddressEntry& entry : reading->addressEntries().value()) {
      names += entry.name.value() + "\n";
    }
    EXPECT_EQ(names, expected);
  });
}

TEST(KernelInNamespace, EveryLinkEntryHasAnAddressAndStatisticsAlsoWithoutAHardwareAddress) {
  inNewNetworkNamespace([] {
    ip("link add en0 type ifb\ntuntap add tun0 mode tun\n");
    const auto reading = LinuxNetworkKernel().beginReading();
    std::size_t links = 0;
    for (const AddressEntry& entry : reading->addressEntries().value()) {
      const auto* address = std::get_if<LinkAddress>(&entry.address.value());
      if (address == nullptr) continue;
      ++links;
      EXPECT_TRUE(entry.statistics);
      EXPECT_EQ(address->bytes.size(), entry.name == "tun0" ? 0U : 6U) << *entry.name;
    }
    EXPECT_EQ(links, 3U);
  });
}

TEST(KernelInNamespace, OnlyGatewayRoutesOfTheMainTableInDumpOrder) {
  inNewNetworkNamespace([] {
    makeManyKinds();
    ip("route add ::/0 via 2001:db8::fe dev en0\n");
    const auto [reading, answer] = readBetweenEqualAnswers([] { return ipOutput("-j -4 route"); });
    std::vector<std::string> seen;
    for (const RouteRecord& route : reading->routes(RouteFamily::ipv4).value()) {
      seen.push_back(addressText(*route.destination) + " " + addressText(*route.gateway) + " " +
                     reading->interfaceName(route.interfaceIndex).value());
    }
    std::vector<std::string> expected;
    for (const json& route : json::parse(answer)) {
      if (!route.contains("gateway")) continue;
      const bool isDefault = route["dst"] == "default";
      expected.push_back((isDefault ? "0.0.0.0" : route["dst"].get<std::string>()) + " " +
                         route["gateway"].get<std::string>() + " " +
                         route["dev"].get<std::string>());
    }
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(seen.size(), 2U);
    const auto& ipv6 = reading->routes(RouteFamily::ipv6).value();
    ASSERT_EQ(ipv6.size(), 1U);
    EXPECT_EQ(addressText(*ipv6[0].gateway), "2001:db8::fe");
  });
}

TEST(KernelInNamespace, ANamespaceWithoutARouteHasAnEmptyTable) {
  inNewNetworkNamespace([] {
    const auto reading = LinuxNetworkKernel().beginReading();
    EXPECT_TRUE(reading->routes(RouteFamily::ipv4).value().empty());
    EXPECT_TRUE(reading->routes(RouteFamily::ipv6).value().empty());
  });
}

TEST(KernelInNamespace, AMultipathRouteGivesOneRecordForEachGateway) {
  inNewNetworkNamespace([] {
    ip("link add en0 type veth peer name en1\nlink set en0 up\nlink set en1 up\n"
       "addr add 192.0.2.1/24 dev en0\naddr add 198.51.100.1/24 dev en1\n"
       "route add default nexthop via 192.0.2.254 dev en0 nexthop via 198.51.100.254 dev en1\n");
    const auto reading = LinuxNetworkKernel().beginReading();
    const auto& routes = reading->routes(RouteFamily::ipv4).value();
    ASSERT_EQ(routes.size(), 2U);
    EXPECT_EQ(addressText(*routes[0].gateway), "192.0.2.254");
    EXPECT_EQ(addressText(*routes[1].gateway), "198.51.100.254");
  });
}

TEST(KernelInNamespace, AReadingSeesOneTableWhateverHappensMeanwhile) {
  inNewNetworkNamespace([] {
    ip("link add en0 type ifb\n");
    const auto reading = LinuxNetworkKernel().beginReading();
    EXPECT_EQ(reading->linkRecords()->size(), 2U);
    ip("link add en1 type ifb\nlink set en1 up\naddr add 192.0.2.1/24 dev en1\n"
       "addr add 192.0.2.2/24 dev lo\nlink set en0 name gone\n");
    EXPECT_EQ(reading->linkRecords()->size(), 2U);
    std::vector<std::string> names;
    for (const AddressEntry& entry : *reading->addressEntries()) names.push_back(*entry.name);
    // The address of the link that came later is left out.
    EXPECT_EQ(names, (std::vector<std::string>{"lo", "en0", "lo"}));
  });
}

TEST(KernelInNamespace, AThousandLinksAreAllThereWhileOneIsRenamedAgainAndAgain) {
  inNewNetworkNamespace([] {
    std::string commands;
    for (int link = 0; link < 500; ++link) {
      commands += "link add a" + std::to_string(link) + " type veth peer name b" +
                  std::to_string(link) + "\n";
    }
    ip(commands + "link add en0 type ifb\n");
    std::string storm;
    for (int round = 0; round < 100; ++round) {
      storm += "link set en0 name en1\nlink set en1 name en0\nlink add x type ifb\nlink del x\n";
    }
    std::atomic<bool> isOver = false;
    std::thread changes([&] {
      ip(storm);
      isOver = true;
    });
    const LinuxNetworkKernel kernel;
    do {
      const auto reading = kernel.beginReading();
      const auto& links = reading->linkRecords();
      ASSERT_TRUE(links);
      ASSERT_GE(links->size(), 1002U);
      std::set<std::string> names;
      for (const LinkRecord& link : *links) names.insert(link.name);
      ASSERT_TRUE(names.contains("b499"));
      ASSERT_TRUE(names.contains("en0") || names.contains("en1"));
    } while (!isOver);
    changes.join();
  });
}

TEST(LinuxNetworkKernel, TheBootTimeIsStableAndInThePast) {
  const LinuxNetworkKernel kernel;
  const auto moment = kernel.bootTime();
  ASSERT_TRUE(moment);
  EXPECT_LT(*moment, std::chrono::system_clock::now());
  for (int round = 0; round < 20; ++round) EXPECT_EQ(kernel.bootTime(), moment);
}

}  // namespace
}  // namespace lanternfold::test
