#include "PlatformLinux/System/LinkCounterSource.h"

#include <utility>
#include <vector>

#include <linux/netlink.h>

#include "PlatformLinux/Netlink/CounterRecords.h"
#include "PlatformLinux/Netlink/LinkMessage.h"
#include "PlatformLinux/System/TableDump.h"

namespace lanternfold {

std::expected<ConnectionMetricsMap, NetworkKernelError> LinkCounterSource::read() {
  if (!socket_) {
    auto socket = NetlinkSocket::open(NETLINK_ROUTE);
    if (!socket) return std::unexpected(socket.error());
    socket_.emplace(std::move(*socket));
  }
  // Of two links of one name the later counts, and that is the fresher one.
  auto links = dumpTable(*socket_, linkDumpRequest(), decodeLinkMessage, &LinkMessage::index,
                         &LinkMessage::index, &LinkMessage::name);
  if (!links) {
    socket_.reset();
    return std::unexpected(links.error());
  }
  std::vector<ConnectionMetricsMap::Entry> metrics;
  metrics.reserve(links->size());
  for (const LinkMessage& link : *links) {
    if (link.describesLink()) metrics.push_back(namedMetricsOf(link));
  }
  return ConnectionMetricsMap::of(std::move(metrics));
}

}  // namespace lanternfold
