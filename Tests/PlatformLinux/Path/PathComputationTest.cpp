#include <net/if.h>
#include <sys/socket.h>

#include "PlatformLinux/Path/PathComputation.h"

namespace lanternfold {
namespace {

constexpr std::uint32_t running = IFF_UP | IFF_RUNNING;

class PathComputation : public testing::Test {
 protected:
  void addLink(std::uint32_t index, std::string name, PathInterfaceType type,
               std::uint32_t flags = running) {
    SnapshotLink entry{.type = type};
    entry.link.index = index;
    entry.link.name = std::move(name);
    entry.link.flags = flags;
    snapshot_.links[index] = entry;
  }

  void addDefaultRoute(std::uint8_t family, const std::vector<std::uint32_t>& interfaces,
                       std::uint32_t priority) {
    RouteMessage route;
    route.family = family;
    route.priority = priority;
    for (const std::uint32_t index : interfaces) route.hops.push_back({.interfaceIndex = index});
    snapshot_.defaultRoutes.push_back(route);
  }

  /// "satisfied: eth0 wlan0".
  std::string path(std::optional<PathInterfaceType> requiredType = std::nullopt) const {
    const NetworkPath result = pathFrom(snapshot_, requiredType);
    std::string text = result.status == PathStatus::satisfied ? "satisfied:" : "unsatisfied:";
    for (const PathInterface& each : result.availableInterfaces) text += " " + each.name;
    return text;
  }

  NetworkSnapshot snapshot_;
};

TEST_F(PathComputation, AMachineWithoutLinksHasNoPath) { EXPECT_EQ(path(), "unsatisfied:"); }

TEST_F(PathComputation, NamesIndexAndType) {
  addLink(4, "wlan0", PathInterfaceType::wifi);
  addDefaultRoute(AF_INET, {4}, 600);
  EXPECT_EQ(pathFrom(snapshot_, std::nullopt),
            (NetworkPath{PathStatus::satisfied, {{"wlan0", 4, PathInterfaceType::wifi}}}));
}

TEST_F(PathComputation, WithoutADefaultRouteItIsUnsatisfiedAndListsByIndex) {
  addLink(3, "eth1", PathInterfaceType::wiredEthernet);
  addLink(2, "eth0", PathInterfaceType::wiredEthernet);
  EXPECT_EQ(path(), "unsatisfied: eth0 eth1");
}

TEST_F(PathComputation, DefaultRoutesRankByMetricAndTheRestByIndex) {
  addLink(2, "docker0", PathInterfaceType::other);
  addLink(3, "wlan0", PathInterfaceType::wifi);
  addLink(4, "eth0", PathInterfaceType::wiredEthernet);
  addLink(5, "br0", PathInterfaceType::other);
  addDefaultRoute(AF_INET, {3}, 600);
  addDefaultRoute(AF_INET, {4}, 100);
  EXPECT_EQ(path(), "satisfied: eth0 wlan0 docker0 br0");
}

TEST_F(PathComputation, OfEqualMetricsTheIPv4RouteRanksFirstThenTheEarlierOne) {
  addLink(2, "a", PathInterfaceType::wiredEthernet);
  addLink(3, "b", PathInterfaceType::wiredEthernet);
  addLink(4, "c", PathInterfaceType::wiredEthernet);
  addDefaultRoute(AF_INET6, {2}, 100);
  addDefaultRoute(AF_INET, {4}, 100);
  addDefaultRoute(AF_INET, {3}, 100);
  EXPECT_EQ(path(), "satisfied: c b a");
}

TEST_F(PathComputation, AnInterfaceHasTheRankOfItsBestRouteAndIsListedOnce) {
  addLink(2, "a", PathInterfaceType::wiredEthernet);
  addLink(3, "b", PathInterfaceType::wiredEthernet);
  addDefaultRoute(AF_INET, {2}, 500);
  addDefaultRoute(AF_INET, {3}, 200);
  addDefaultRoute(AF_INET6, {2}, 100);
  EXPECT_EQ(path(), "satisfied: a b");
}

TEST_F(PathComputation, EveryHopOfAMultipathRouteCounts) {
  addLink(2, "a", PathInterfaceType::wiredEthernet);
  addLink(3, "b", PathInterfaceType::wiredEthernet);
  addDefaultRoute(AF_INET, {3, 2}, 0);
  EXPECT_EQ(path(), "satisfied: b a");
}

TEST_F(PathComputation, ALinkThatIsDownOrHasNoCarrierIsNotListed) {
  addLink(2, "down", PathInterfaceType::wiredEthernet, 0);
  addLink(3, "unplugged", PathInterfaceType::wiredEthernet, IFF_UP);
  addDefaultRoute(AF_INET, {2}, 0);
  addDefaultRoute(AF_INET, {3}, 0);
  EXPECT_EQ(path(), "unsatisfied:");
}

TEST_F(PathComputation, LoopbackIsNeverListed) {
  addLink(1, "lo", PathInterfaceType::loopback);
  addDefaultRoute(AF_INET6, {1}, 0);
  EXPECT_EQ(path(), "unsatisfied:");
}

TEST_F(PathComputation, ADefaultRouteOverAnUnknownInterfaceCountsForNothing) {
  addLink(2, "eth0", PathInterfaceType::wiredEthernet);
  addDefaultRoute(AF_INET, {9, 0}, 0);
  EXPECT_EQ(path(), "unsatisfied: eth0");
}

TEST_F(PathComputation, WithARequiredTypeOtherInterfacesDoNotExist) {
  addLink(2, "eth0", PathInterfaceType::wiredEthernet);
  addLink(3, "wlan0", PathInterfaceType::wifi);
  addDefaultRoute(AF_INET, {2}, 0);
  EXPECT_EQ(path(PathInterfaceType::wifi), "unsatisfied: wlan0");
  EXPECT_EQ(path(PathInterfaceType::wiredEthernet), "satisfied: eth0");
  EXPECT_EQ(path(PathInterfaceType::cellular), "unsatisfied:");
}

TEST_F(PathComputation, OfTwoWifiInterfacesTheJoinedOneIsFoundFirst) {
  addLink(2, "eth0", PathInterfaceType::wiredEthernet);
  addLink(3, "wlan0", PathInterfaceType::wifi, IFF_UP);
  addLink(4, "wlan1", PathInterfaceType::wifi);
  EXPECT_EQ(path(PathInterfaceType::wifi), "unsatisfied: wlan1") << "the other has no carrier";
  addLink(3, "wlan0", PathInterfaceType::wifi);
  addDefaultRoute(AF_INET, {2}, 100);
  addDefaultRoute(AF_INET, {4}, 600);
  EXPECT_EQ(path(PathInterfaceType::wifi), "satisfied: wlan1 wlan0") << "the other is no way out";
}

}  // namespace
}  // namespace lanternfold
