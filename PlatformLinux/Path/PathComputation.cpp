#include "PlatformLinux/Path/PathComputation.h"

#include <algorithm>
#include <net/if.h>
#include <set>
#include <sys/socket.h>
#include <tuple>

namespace lanternfold {

namespace {

bool isUsable(const SnapshotLink& each, std::optional<PathInterfaceType> requiredType) {
  constexpr std::uint32_t upAndRunning = IFF_UP | IFF_RUNNING;
  return (each.link.flags & upAndRunning) == upAndRunning &&
         each.type != PathInterfaceType::loopback && (!requiredType || each.type == *requiredType);
}

/// The interfaces of the default routes, best first; one may be there several times.
std::vector<std::uint32_t> defaultRouteInterfaces(const std::vector<RouteMessage>& routes) {
  struct Ranked {
    std::tuple<std::uint32_t, bool, std::size_t> rank;
    const RouteMessage* route;
  };
  std::vector<Ranked> ranked;
  ranked.reserve(routes.size());
  for (const RouteMessage& route : routes) {
    ranked.push_back({{route.priority, route.family != AF_INET, ranked.size()}, &route});
  }
  std::sort(ranked.begin(), ranked.end(),
            [](const Ranked& one, const Ranked& other) { return one.rank < other.rank; });
  std::vector<std::uint32_t> indexes;
  for (const Ranked& each : ranked) {
    for (const RouteHop& hop : each.route->hops) indexes.push_back(hop.interfaceIndex);
  }
  return indexes;
}

}  // namespace

NetworkPath pathFrom(const NetworkSnapshot& snapshot,
                     std::optional<PathInterfaceType> requiredType) {
  NetworkPath path;
  std::set<std::uint32_t> listed;
  const auto list = [&](std::uint32_t index) {
    const auto found = snapshot.links.find(index);
    if (found == snapshot.links.end() || !isUsable(found->second, requiredType)) return;
    if (!listed.insert(index).second) return;
    path.availableInterfaces.push_back(
        {.name = found->second.link.name, .index = index, .type = found->second.type});
  };
  for (const std::uint32_t index : defaultRouteInterfaces(snapshot.defaultRoutes)) list(index);
  path.status = listed.empty() ? PathStatus::unsatisfied : PathStatus::satisfied;
  for (const auto& [index, link] : snapshot.links) list(index);
  return path;
}

}  // namespace lanternfold
