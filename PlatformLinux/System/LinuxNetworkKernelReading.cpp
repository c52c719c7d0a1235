#include "PlatformLinux/System/LinuxNetworkKernelReading.h"

#include <algorithm>
#include <cerrno>
#include <net/if_arp.h>
#include <sys/socket.h>
#include <utility>

#include "PlatformLinux/Netlink/AddressMessage.h"
#include "PlatformLinux/Netlink/KernelRecords.h"
#include "PlatformLinux/Netlink/LinkMessage.h"
#include "PlatformLinux/Netlink/RouteMessage.h"
#include "PlatformLinux/System/LinkSpeeds.h"

namespace lanternfold {

namespace {

// Hardware has a speed, and so has a tap or tun, whose owner may set it.
bool mayHaveSpeed(const LinkMessage& link) { return link.parentDeviceName || link.kind == "tun"; }

/// Whether a dump came in ascending order. An interrupted dump of which that is true passed over
/// nothing that stayed.
template <typename Key>
class DumpOrder {
 public:
  void note(const Key& key) {
    isAscending_ = isAscending_ && !(key < last_);
    last_ = key;
  }
  [[nodiscard]] bool allowsUse(NetworkKernelError error) const {
    return error == NetworkKernelError::interrupted && isAscending_;
  }

 private:
  Key last_{};
  bool isAscending_ = true;
};

// The kernel dumps the addresses of one family after those of the other.
using AddressKey = std::pair<std::size_t, std::uint32_t>;

AddressKey keyOf(const AddressMessage& address) {
  return {address.address ? address.address->index() : std::variant_npos, address.interfaceIndex};
}

}  // namespace

LinuxNetworkKernelReading::LinuxNetworkKernelReading(std::shared_ptr<NetlinkSocketPool> sockets,
                                                     std::shared_ptr<TableSizes> sizes)
    : sockets_(std::move(sockets)), sizes_(std::move(sizes)) {}

LinuxNetworkKernelReading::~LinuxNetworkKernelReading() {
  if (socket_) sockets_->giveBack(std::move(*socket_));
}

const std::expected<std::vector<AddressEntry>, NetworkKernelError>&
LinuxNetworkKernelReading::addressEntries() {
  if (!addressEntries_) addressEntries_ = readAddressEntries();
  return *addressEntries_;
}

const std::expected<std::vector<LinkRecord>, NetworkKernelError>&
LinuxNetworkKernelReading::linkRecords() {
  readLinks();
  return *linkRecords_;
}

const std::expected<std::vector<RouteRecord>, NetworkKernelError>&
LinuxNetworkKernelReading::routes(RouteFamily family) {
  auto& table = family == RouteFamily::ipv4 ? ipv4Routes_ : ipv6Routes_;
  if (!table) table = dumpRoutes(family);
  return *table;
}

std::optional<std::string> LinuxNetworkKernelReading::interfaceName(std::uint32_t index) {
  readLinks();
  const auto position = positionOfLink(index);
  return position ? std::optional((**linkRecords_)[*position].name) : std::nullopt;
}

void LinuxNetworkKernelReading::readLinks() {
  if (linkRecords_) return;
  auto links = dumpLinks();
  if (!links) {
    linkRecords_ = std::unexpected(links.error());
    return;
  }
  positions_.reserve(links->records.size());
  for (const LinkRecord& record : links->records) {
    positions_.push_back({record.index, static_cast<std::uint32_t>(positions_.size())});
  }
  if (!std::ranges::is_sorted(positions_, {}, &IndexPosition::index)) {
    std::ranges::sort(positions_, {}, &IndexPosition::index);
  }
  statistics_ = std::move(links->statistics);
  linkRecords_ = std::move(links->records);
  readSpeeds(links->speedCandidates);
}

std::expected<LinuxNetworkKernelReading::Links, NetworkKernelError>
LinuxNetworkKernelReading::dumpLinks() {
  Links links;
  DumpOrder<std::uint32_t> order;
  const auto begin = [&] {
    links = {};
    order = {};
    links.records.reserve(sizes_->links);
    links.statistics.reserve(sizes_->links);
  };
  const auto take = [&](const NetlinkMessage& message) {
    const auto link = decodeLinkMessage(message);
    if (!link || !link->describesLink()) return;
    order.note(link->index);
    if (mayHaveSpeed(*link)) links.speedCandidates.push_back(link->index);
    links.statistics.push_back(statistics32Of(*link));
    links.records.push_back(linkRecordOf(*link));
  };
  const auto result = dump(linkDumpRequest(), {.begin = begin, .message = take});
  if (!result && !order.allowsUse(result.error())) return std::unexpected(result.error());
  sizes_->links = links.records.size();
  return links;
}

void LinuxNetworkKernelReading::readSpeeds(const std::vector<std::uint32_t>& candidates) {
  for (const LinkSpeed& speed : readLinkSpeeds(candidates)) {
    const auto position = positionOfLink(speed.interfaceIndex);
    if (position) (**linkRecords_)[*position].baudrate = speed.bitsPerSecond.value_or(0);
  }
}

std::expected<std::vector<AddressEntry>, NetworkKernelError>
LinuxNetworkKernelReading::readAddressEntries() {
  readLinks();
  if (!*linkRecords_) return std::unexpected(linkRecords_->error());
  const std::vector<LinkRecord>& links = **linkRecords_;
  std::vector<AddressEntry> entries;
  DumpOrder<AddressKey> order;
  const auto begin = [&] {
    entries.clear();
    order = {};
    entries.reserve(std::max(links.size(), sizes_->addressEntries.load()));
    for (std::size_t position = 0; position < links.size(); ++position) {
      entries.push_back(linkEntryOf(links[position], statistics_[position]));
    }
  };
  const auto take = [&](const NetlinkMessage& message) {
    const auto address = decodeAddressMessage(message);
    if (!address) return;
    order.note(keyOf(*address));
    // A link that came or went between the two dumps has no name here; its address is left out.
    const auto position = positionOfLink(address->interfaceIndex);
    if (!position || !address->address) return;
    entries.push_back({links[*position].name, address->address, address->netmask, std::nullopt});
  };
  const auto result = dump(addressDumpRequest(), {.begin = begin, .message = take});
  if (!result && !order.allowsUse(result.error())) return std::unexpected(result.error());
  sizes_->addressEntries = entries.size();
  return entries;
}

std::expected<std::vector<RouteRecord>, NetworkKernelError> LinuxNetworkKernelReading::dumpRoutes(
    RouteFamily family) {
  std::vector<RouteRecord> routes;
  const auto take = [&routes](const NetlinkMessage& message) {
    const auto route = decodeRouteMessage(message);
    if (route) appendGatewayRoutes(*route, routes);
  };
  const auto number = static_cast<std::uint8_t>(family == RouteFamily::ipv4 ? AF_INET : AF_INET6);
  const auto result =
      dump(routeDumpRequest(number), {.begin = [&routes] { routes.clear(); }, .message = take});
  // The main table is made with its first route; until then the kernel knows no such table.
  const bool isAbsent = !result && socket_ && socket_->lastErrorNumber() == ENOENT;
  if (!result && !isAbsent) return std::unexpected(result.error());
  return routes;
}

std::optional<std::size_t> LinuxNetworkKernelReading::positionOfLink(std::uint32_t index) {
  // Addresses come in the order of their links: mostly the same link is meant again or the next.
  const std::size_t end = std::min(lastFound_ + 2, positions_.size());
  for (; lastFound_ < end; ++lastFound_) {
    if (positions_[lastFound_].index == index) return positions_[lastFound_].position;
  }
  const auto found = std::ranges::lower_bound(positions_, index, {}, &IndexPosition::index);
  lastFound_ = static_cast<std::size_t>(found - positions_.begin());
  if (found == positions_.end() || found->index != index) return std::nullopt;
  return found->position;
}

std::expected<void, NetworkKernelError> LinuxNetworkKernelReading::dump(
    const NetlinkRequest& request, const NetlinkDumpHandler& handler) {
  if (!socket_) {
    auto socket = sockets_->take();
    if (!socket) return std::unexpected(socket.error());
    socket_.emplace(std::move(*socket));
  }
  return socket_->dump(request, handler);
}

}  // namespace lanternfold
