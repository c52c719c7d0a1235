#include "PlatformLinux/System/WirelessRoles.h"

#include <algorithm>

#include <linux/netlink.h>

#include "PlatformLinux/Netlink/WirelessInterfaceMessage.h"
#include "PlatformLinux/System/GenericFamily.h"
#include "PlatformLinux/System/TableDump.h"

namespace lanternfold {

namespace {

using Roles = std::map<std::uint32_t, WirelessRole>;

Roles readRoles() {
  Roles roles;
  auto socket = NetlinkSocket::open(NETLINK_GENERIC);
  const auto type = socket ? genericFamilyType(*socket, "nl80211") : std::nullopt;
  if (!type) return roles;
  const auto interfaces =
      dumpTable(*socket, wirelessInterfaceDumpRequest(*type), decodeWirelessInterface,
                &WirelessInterfaceMessage::index, &WirelessInterfaceMessage::index);
  if (!interfaces) return roles;
  for (const WirelessInterfaceMessage& interface : *interfaces) {
    if (interface.index != 0) roles[interface.index] = interface.role;
  }
  return roles;
}

}  // namespace

const WirelessRoles::Roles& WirelessRoles::roles() {
  if (!roles_) roles_ = readRoles();
  return *roles_;
}

std::optional<WirelessRole> WirelessRoles::roleOf(std::uint32_t interfaceIndex) {
  const auto role = roles().find(interfaceIndex);
  return role == roles().end() ? std::nullopt : std::optional(role->second);
}

bool WirelessRoles::hasNetworks() {
  return std::ranges::any_of(roles(),
                             [](const auto& each) { return each.second == WirelessRole::network; });
}

}  // namespace lanternfold
