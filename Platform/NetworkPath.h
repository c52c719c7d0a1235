// What the operating system says of the way out of this machine.
//
// Made by: the path monitors. Read by: the network state monitor, the interface resolver.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lanternfold {

enum class PathInterfaceType { wifi, wiredEthernet, cellular, loopback, other };

enum class PathStatus {
  satisfied,    ///< there is an interface with a default route
  unsatisfied,  ///< there is none
};

struct PathInterface {
  std::string name;
  std::uint32_t index = 0;
  PathInterfaceType type = PathInterfaceType::other;
  friend bool operator==(const PathInterface&, const PathInterface&) = default;
};

struct NetworkPath {
  PathStatus status = PathStatus::unsatisfied;
  /// Interfaces that are up and running, the one of the best default route first, then those with
  /// further default routes by metric, then the others by index. Loopback is never listed.
  std::vector<PathInterface> availableInterfaces;
  friend bool operator==(const NetworkPath&, const NetworkPath&) = default;
};

}  // namespace lanternfold
