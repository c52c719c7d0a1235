#include "PlatformLinux/System/LinkCounterSource.h"

#include <utility>
#include <vector>

#include <linux/netlink.h>

#include "PlatformLinux/Netlink/LinkMessage.h"
#include "PlatformLinux/Netlink/LinkMetrics.h"

namespace lanternfold {

std::expected<ConnectionMetricsMap, NetworkKernelError> LinkCounterSource::read() {
  if (!socket_) {
    auto socket = NetlinkSocket::open(NETLINK_ROUTE);
    if (!socket) return std::unexpected(socket.error());
    socket_.emplace(std::move(*socket));
  }
  std::vector<ConnectionMetricsMap::Entry> links;
  const auto take = [&links](const NetlinkMessage& message) {
    const auto link = decodeLinkMessage(message);
    if (link && link->describesLink()) links.push_back(namedMetricsOf(*link));
  };
  const auto result =
      socket_->dump(linkDumpRequest(), {.begin = [&links] { links.clear(); }, .message = take});
  if (!result) {
    socket_.reset();
    return std::unexpected(result.error());
  }
  return ConnectionMetricsMap::of(std::move(links));
}

}  // namespace lanternfold
