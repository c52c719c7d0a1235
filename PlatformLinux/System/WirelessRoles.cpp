#include "PlatformLinux/System/WirelessRoles.h"

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

std::optional<WirelessRole> WirelessRoles::roleOf(std::uint32_t interfaceIndex) {
  if (!roles_) roles_ = readRoles();
  const auto role = roles_->find(interfaceIndex);
  return role == roles_->end() ? std::nullopt : std::optional(role->second);
}

}  // namespace lanternfold
