#include "PlatformLinux/System/WirelessRoles.h"

#include <linux/netlink.h>

#include "PlatformLinux/Netlink/WirelessInterfaceMessage.h"
#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

namespace {

using Roles = std::map<std::uint32_t, WirelessRole>;

std::optional<std::uint16_t> messageTypeOfWireless(NetlinkSocket& socket) {
  std::optional<std::uint16_t> messageType;
  const NetlinkDumpHandler handler{.begin = [&] { messageType.reset(); },
                                   .message =
                                       [&](const NetlinkMessage& message) {
                                         if (const auto type = decodeGenericFamily(message)) {
                                           messageType = *type;
                                         }
                                       }};
  const auto answer = socket.dump(genericFamilyRequest("nl80211"), handler);
  return answer ? messageType : std::nullopt;
}

/// An interrupted dump still tells of most interfaces, which is better than of none.
Roles readRoles() {
  Roles roles;
  auto socket = NetlinkSocket::open(NETLINK_GENERIC);
  const auto messageType = socket ? messageTypeOfWireless(*socket) : std::nullopt;
  if (!messageType) return roles;
  const NetlinkDumpHandler handler{.begin = [&] { roles.clear(); },
                                   .message =
                                       [&](const NetlinkMessage& message) {
                                         const auto interface = decodeWirelessInterface(message);
                                         if (interface && interface->index != 0) {
                                           roles[interface->index] = interface->role;
                                         }
                                       }};
  const auto answer = socket->dump(wirelessInterfaceDumpRequest(*messageType), handler);
  if (!answer && answer.error() != NetworkKernelError::interrupted) roles.clear();
  return roles;
}

}  // namespace

std::optional<WirelessRole> WirelessRoles::roleOf(std::uint32_t interfaceIndex) {
  if (!roles_) roles_ = readRoles();
  const auto role = roles_->find(interfaceIndex);
  return role == roles_->end() ? std::nullopt : std::optional(role->second);
}

}  // namespace lanternfold
