#include "PlatformLinux/System/LinuxNetworkKernelReading.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <utility>

#include "PlatformLinux/Netlink/AddressMessage.h"
#include "PlatformLinux/Netlink/KernelRecords.h"
#include "PlatformLinux/Netlink/LinkMessage.h"
#include "PlatformLinux/Netlink/RouteMessage.h"
#include "PlatformLinux/System/LinkSpeeds.h"
#include "PlatformLinux/System/TableDump.h"

namespace lanternfold {

namespace {

// Hardware has a speed, and so has a tap or tun, whose owner may set it.
bool mayHaveSpeed(const LinkMessage& link) { return link.parentDeviceName || link.kind == "tun"; }

struct DumpedLink {
  LinkRecord record;
  LinkStatistics32 statistics;
  bool mayHaveSpeed = false;
};

/// None for a message that speaks of something else of the link, such as its bridge's settings.
std::optional<DumpedLink> dumpedLinkOf(const NetlinkMessage& message) {
  auto link = decodeLinkMessage(message);
  if (!link || !link->describesLink()) return std::nullopt;
  DumpedLink result{.statistics = statistics32Of(*link), .mayHaveSpeed = mayHaveSpeed(*link)};
  result.record = linkRecordOf(*std::move(link));
  return result;
}

std::expected<std::vector<DumpedLink>, NetworkKernelError> dumpLinks(NetlinkSocket& socket,
                                                                     std::size_t room) {
  const auto index = [](const DumpedLink& link) { return link.record.index; };
  const auto name = [](const DumpedLink& link) { return link.record.name; };
  return dumpTableWithRoom(room, socket, linkDumpRequest(), dumpedLinkOf, index, index, name);
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
  const auto opened = socket();
  auto links = opened ? dumpLinks(**opened, sizes_->links) : std::unexpected(opened.error());
  if (!links) {
    linkRecords_ = std::unexpected(links.error());
    return;
  }
  sizes_->links = links->size();
  std::vector<LinkRecord> records;
  std::vector<std::uint32_t> speedCandidates;
  records.reserve(links->size());
  statistics_.reserve(links->size());
  positions_.reserve(links->size());
  for (DumpedLink& link : *links) {
    const std::uint32_t index = link.record.index;
    positions_.push_back({index, static_cast<std::uint32_t>(positions_.size())});
    if (link.mayHaveSpeed) speedCandidates.push_back(index);
    statistics_.push_back(link.statistics);
    records.push_back(std::move(link.record));
  }
  if (!std::ranges::is_sorted(positions_, {}, &IndexPosition::index)) {
    std::ranges::sort(positions_, {}, &IndexPosition::index);
  }
  linkRecords_ = std::move(records);
  readSpeeds(speedCandidates);
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
  const auto opened = socket();
  if (!opened) return std::unexpected(opened.error());
  const auto addresses = dumpTableWithRoom(sizes_->addresses, **opened, addressDumpRequest(),
                                           decodeAddressMessage, dumpPlace, dumpIdentity);
  if (!addresses) return std::unexpected(addresses.error());
  sizes_->addresses = addresses->size();
  const std::vector<LinkRecord>& links = **linkRecords_;
  std::vector<AddressEntry> entries;
  entries.reserve(links.size() + addresses->size());
  for (std::size_t position = 0; position < links.size(); ++position) {
    entries.push_back(linkEntryOf(links[position], statistics_[position]));
  }
  for (const AddressMessage& address : *addresses) {
    // A link that came or went between the two dumps has no name here; its address is left out.
    const auto position = positionOfLink(address.interfaceIndex);
    if (!position || !address.address) continue;
    entries.push_back({links[*position].name, address.address, address.netmask, std::nullopt});
  }
  return entries;
}

std::expected<std::vector<RouteRecord>, NetworkKernelError> LinuxNetworkKernelReading::dumpRoutes(
    RouteFamily family) {
  const auto opened = socket();
  if (!opened) return std::unexpected(opened.error());
  const auto number = static_cast<std::uint8_t>(family == RouteFamily::ipv4 ? AF_INET : AF_INET6);
  const auto routes = dumpTable(**opened, routeDumpRequest(number), decodeRouteMessage);
  // The main table is made with its first route; until then the kernel knows no such table.
  const bool isAbsent = !routes && (*opened)->lastErrorNumber() == ENOENT;
  if (!routes && !isAbsent) return std::unexpected(routes.error());
  std::vector<RouteRecord> records;
  if (!routes) return records;
  for (const RouteMessage& route : *routes) appendGatewayRoutes(route, records);
  return records;
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

std::expected<NetlinkSocket*, NetworkKernelError> LinuxNetworkKernelReading::socket() {
  if (!socket_) {
    auto socket = sockets_->take();
    if (!socket) return std::unexpected(socket.error());
    socket_.emplace(std::move(*socket));
  }
  return &*socket_;
}

}  // namespace lanternfold
