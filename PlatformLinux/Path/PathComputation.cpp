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
std::vector<std::uint32_t> defaultRouteInterfaces(std::vector<RouteMessage> routes) {
  std::stable_sort(routes.begin(), routes.end(),
                   [](const RouteMessage& one, const RouteMessage& other) {
                     return std::tuple(one.priority, one.family != AF_INET) <
                            std::tuple(other.priority, other.family != AF_INET);
                   });
  std::vector<std::uint32_t> indexes;
  for (const RouteMessage& route : routes) {
    for (const RouteHop& hop : route.hops) indexes.push_back(hop.interfaceIndex);
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
