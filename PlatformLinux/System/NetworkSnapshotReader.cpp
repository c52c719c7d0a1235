#include "PlatformLinux/System/NetworkSnapshotReader.h"

#include <sys/socket.h>
#include <utility>

#include <linux/netlink.h>

#include "PlatformLinux/System/TableDump.h"

namespace lanternfold {

std::expected<NetworkSnapshotReader, NetworkKernelError> NetworkSnapshotReader::open(
    LinkSurvey survey) {
  auto socket = NetlinkSocket::open(NETLINK_ROUTE);
  if (!socket) return std::unexpected(socket.error());
  return NetworkSnapshotReader(std::move(survey), std::move(*socket));
}

std::expected<NetworkSnapshot, NetworkKernelError> NetworkSnapshotReader::read() {
  NetworkSnapshot snapshot;
  if (const auto links = readLinks(snapshot); !links) return std::unexpected(links.error());
  if (const auto addresses = readAddresses(snapshot); !addresses) {
    return std::unexpected(addresses.error());
  }
  if (const auto routes = readDefaultRoutes(AF_INET, snapshot); !routes) {
    return std::unexpected(routes.error());
  }
  // A kernel without IPv6 answers that it does not know the table, which is the same as an empty
  // one.
  static_cast<void>(readDefaultRoutes(AF_INET6, snapshot));
  return snapshot;
}

std::expected<void, NetworkKernelError> NetworkSnapshotReader::readLinks(
    NetworkSnapshot& snapshot) {
  auto links = survey_.allLinks(socket_);
  if (!links) return std::unexpected(links.error());
  for (SurveyedLink& each : *links) {
    const std::uint32_t index = each.link.index;
    snapshot.links.insert_or_assign(index,
                                    SnapshotLink{.link = withoutCounters(std::move(each.link)),
                                                 .type = each.linkClass.pathType});
  }
  return {};
}

std::expected<void, NetworkKernelError> NetworkSnapshotReader::readAddresses(
    NetworkSnapshot& snapshot) {
  auto addresses =
      dumpTable(socket_, addressDumpRequest(), decodeAddressMessage, dumpPlace, dumpIdentity);
  if (!addresses) return std::unexpected(addresses.error());
  for (AddressMessage& address : *addresses) {
    const std::uint32_t index = address.interfaceIndex;
    snapshot.addresses.emplace(index, std::move(address));
  }
  return {};
}

std::expected<void, NetworkKernelError> NetworkSnapshotReader::readDefaultRoutes(
    std::uint8_t family, NetworkSnapshot& snapshot) {
  auto routes = dumpTable(socket_, routeDumpRequest(family), decodeRouteMessage);
  if (!routes) return std::unexpected(routes.error());
  for (RouteMessage& route : *routes) {
    if (route.isDefault()) snapshot.defaultRoutes.push_back(std::move(route));
  }
  return {};
}

}  // namespace lanternfold
