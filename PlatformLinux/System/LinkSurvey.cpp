#include "PlatformLinux/System/LinkSurvey.h"

#include <net/if.h>
#include <utility>

#include <linux/netlink.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/LinkRequest.h"
#include "PlatformLinux/System/TableDump.h"
#include "PlatformLinux/System/WirelessRoles.h"

namespace lanternfold {

namespace {

LinkFacts factsOfMessage(const LinkMessage& link) {
  return {.name = link.name,
          .index = link.index,
          .hardwareType = link.hardwareType,
          .isLoopback = (link.flags & IFF_LOOPBACK) != 0,
          .kind = link.kind.value_or(""),
          .hasMaster = link.masterIndex.has_value(),
          .masterKind = link.portKind.value_or(""),
          .hasDevice = link.parentDeviceName.has_value(),
          .deviceType = {},
          .driver = {},
          .wirelessRole = {}};
}

/// Only links of devices are in the device tree with more than their name. rtnetlink names the
/// device since Linux 5.14, before that only the tree does.
void addDeviceFacts(LinkFacts& facts, const DeviceTree& tree, WirelessRoles& wirelessRoles) {
  if (facts.isLoopback || !isKindOfDevices(facts.kind)) return;
  const auto entry = tree.link(facts.name, facts.index);
  if (entry) {
    facts.hasDevice = facts.hasDevice || entry->hasDevice;
    facts.deviceType = entry->deviceType;
    facts.driver = entry->driver;
  }
  const bool mayBeWifi = entry ? entry->hasRadio || entry->deviceType == "wlan" : facts.hasDevice;
  if (mayBeWifi) facts.wirelessRole = wirelessRoles.roleOf(facts.index);
}

SurveyedLink surveyed(LinkMessage link, const DeviceTree& tree, WirelessRoles& wirelessRoles) {
  LinkFacts facts = factsOfMessage(link);
  addDeviceFacts(facts, tree, wirelessRoles);
  return {.link = std::move(link), .linkClass = classifyLink(facts)};
}

}  // namespace

std::expected<std::vector<SurveyedLink>, NetworkKernelError> LinkSurvey::allLinks() const {
  auto socket = NetlinkSocket::open(NETLINK_ROUTE);
  if (!socket) return std::unexpected(socket.error());
  return allLinks(*socket);
}

std::expected<std::vector<SurveyedLink>, NetworkKernelError> LinkSurvey::allLinks(
    NetlinkSocket& socket) const {
  auto links = dumpTable(socket, linkSurveyRequest(), decodeLinkMessage, &LinkMessage::index,
                         &LinkMessage::index, &LinkMessage::name);
  if (!links) return std::unexpected(links.error());
  WirelessRoles wirelessRoles;
  std::vector<SurveyedLink> result;
  result.reserve(links->size());
  for (LinkMessage& link : *links) {
    result.push_back(surveyed(std::move(link), tree_, wirelessRoles));
  }
  return result;
}

std::optional<SurveyedLink> LinkSurvey::linkNamed(std::string_view name) const {
  if (name.empty() || name.size() >= IFNAMSIZ) return std::nullopt;
  auto socket = NetlinkSocket::open(NETLINK_ROUTE);
  if (!socket) return std::nullopt;
  const auto links = dumpTable(*socket, linkByNameRequest(name), decodeLinkMessage);
  // The kernel also finds a link by an alternative name, which is not its name.
  if (!links || links->size() != 1 || links->front().name != name) return std::nullopt;
  WirelessRoles wirelessRoles;
  return surveyed(links->front(), tree_, wirelessRoles);
}

}  // namespace lanternfold
