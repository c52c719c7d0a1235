// What the path monitor remembers of the kernel's tables: every link and address and the default
// routes, without counters and lifetimes.
//
// Made by: `NetworkSnapshotReader`. Read by: `pathFrom` and `isNews`.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "Platform/NetworkPath.h"
#include "PlatformLinux/Netlink/AddressMessage.h"
#include "PlatformLinux/Netlink/LinkMessage.h"
#include "PlatformLinux/Netlink/RouteMessage.h"

namespace lanternfold {

struct SnapshotLink {
  /// Without counters.
  LinkMessage link;
  PathInterfaceType type = PathInterfaceType::other;
  friend bool operator==(const SnapshotLink&, const SnapshotLink&) = default;
};

struct NetworkSnapshot {
  /// By interface index.
  std::map<std::uint32_t, SnapshotLink> links;
  /// By the index of their interface.
  std::multimap<std::uint32_t, AddressMessage> addresses;
  /// Of both families, in dump order.
  std::vector<RouteMessage> defaultRoutes;
  friend bool operator==(const NetworkSnapshot&, const NetworkSnapshot&) = default;
};

/// The message as a snapshot keeps it: a changed counter is no change of the link.
[[nodiscard]] LinkMessage withoutCounters(LinkMessage link);

}  // namespace lanternfold
