#include "Tests/Support/FakeNetworkKernel.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

std::size_t positionOf(FakeNetworkKernel::Table table) { return static_cast<std::size_t>(table); }

std::size_t positionOf(RouteFamily family) { return family == RouteFamily::ipv4 ? 0 : 1; }

LinkStatistics32 lowerHalves(const LinkRecord& link) {
  const auto half = [](std::uint64_t counter) { return static_cast<std::uint32_t>(counter); };
  return {.sentBytes = half(link.sentBytes),
          .recvBytes = half(link.recvBytes),
          .sentErrors = half(link.sentErrors),
          .recvErrors = half(link.recvErrors),
          .sentPackets = half(link.sentPackets),
          .recvPackets = half(link.recvPackets),
          .collisions = half(link.collisions),
          .mtu = link.mtu};
}

AddressEntry linkEntry(const LinkRecord& link) {
  return {.name = link.name,
          .address = link.hardwareAddress,
          .netmask = std::nullopt,
          .statistics = lowerHalves(link)};
}

}  // namespace

/// Copies each table when it is first asked for.
class FakeNetworkKernel::Reading final : public NetworkKernelReading {
 public:
  explicit Reading(const FakeNetworkKernel& kernel) : kernel_(kernel) {}

  const std::expected<std::vector<AddressEntry>, NetworkKernelError>& addressEntries() override {
    return fetchOnce(entries_, Table::addressEntries,
                     [this] { return kernel_.currentAddressEntries(); });
  }

  const std::expected<std::vector<LinkRecord>, NetworkKernelError>& linkRecords() override {
    return fetchOnce(links_, Table::linkRecords, [this] { return kernel_.currentLinkRecords(); });
  }

  const std::expected<std::vector<RouteRecord>, NetworkKernelError>& routes(
      RouteFamily family) override {
    const Table table = family == RouteFamily::ipv4 ? Table::ipv4Routes : Table::ipv6Routes;
    return fetchOnce(routes_[positionOf(family)], table, [this, family] {
      const std::lock_guard lock(kernel_.mutex_);
      return kernel_.routes_[positionOf(family)];
    });
  }

  std::optional<std::string> interfaceName(std::uint32_t index) override {
    const auto& names =
        fetchOnce(names_, Table::interfaceNames, [this] { return kernel_.currentNames(); });
    if (!names) return std::nullopt;
    const auto name = names->find(index);
    return name == names->end() ? std::nullopt : std::optional(name->second);
  }

 private:
  template <typename Rows>
  using Fetched = std::optional<std::expected<Rows, NetworkKernelError>>;

  template <typename Rows, typename Current>
  const std::expected<Rows, NetworkKernelError>& fetchOnce(Fetched<Rows>& kept, Table table,
                                                           const Current& current) {
    if (!kept) {
      const auto error = kernel_.beginFetch(table);
      if (error) {
        kept.emplace(std::unexpected(*error));
      } else {
        kept.emplace(current());
      }
    }
    return *kept;
  }

  const FakeNetworkKernel& kernel_;
  Fetched<std::vector<AddressEntry>> entries_;
  Fetched<std::vector<LinkRecord>> links_;
  std::array<Fetched<std::vector<RouteRecord>>, 2> routes_;
  Fetched<std::map<std::uint32_t, std::string>> names_;
};

FakeNetworkKernel::FakeNetworkKernel() = default;
FakeNetworkKernel::~FakeNetworkKernel() = default;

std::uint32_t FakeNetworkKernel::addLink(LinkRecord link) {
  const std::lock_guard lock(mutex_);
  if (link.index == 0) {
    for (const LinkRecord& other : links_) link.index = std::max(link.index, other.index);
    ++link.index;
  }
  links_.push_back(std::move(link));
  return links_.back().index;
}

std::uint32_t FakeNetworkKernel::addLink(std::string_view name,
                                         const std::vector<std::uint8_t>& hardwareAddress) {
  LinkRecord link;
  link.name = name;
  link.hardwareAddress = {LinkAddressBytes(hardwareAddress)};
  link.type = 6;
  link.mtu = 1500;
  return addLink(std::move(link));
}

std::uint32_t FakeNetworkKernel::addLoopback() {
  LinkRecord link;
  link.name = "lo";
  link.hardwareAddress = {{0, 0, 0, 0, 0, 0}};
  link.type = 24;
  link.mtu = 65536;
  const std::uint32_t index = addLink(std::move(link));
  addIPv4Address("lo", {127, 0, 0, 1}, {255, 0, 0, 0});
  IPv6Bytes mask;
  mask.fill(0xFF);
  addIPv6Address("lo", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, mask);
  return index;
}

void FakeNetworkKernel::setCounters(std::string_view name, const FakeLinkCounters& counters) {
  const std::lock_guard lock(mutex_);
  LinkRecord& link = linkNamed(name);
  link.recvBytes = counters.recvBytes;
  link.sentBytes = counters.sentBytes;
  link.recvPackets = counters.recvPackets;
  link.sentPackets = counters.sentPackets;
  link.recvErrors = counters.recvErrors;
  link.sentErrors = counters.sentErrors;
  link.collisions = counters.collisions;
}

void FakeNetworkKernel::renameLink(std::string_view from, std::string_view to) {
  const std::lock_guard lock(mutex_);
  linkNamed(from).name = to;
}

void FakeNetworkKernel::removeLink(std::string_view name) {
  const std::lock_guard lock(mutex_);
  const std::uint32_t index = linkNamed(name).index;
  std::erase_if(addresses_, [index](const Address& entry) { return entry.linkIndex == index; });
  for (auto& table : routes_) {
    std::erase_if(table,
                  [index](const RouteRecord& route) { return route.interfaceIndex == index; });
  }
  std::erase_if(links_, [index](const LinkRecord& link) { return link.index == index; });
}

void FakeNetworkKernel::addIPv4Address(std::string_view link, IPv4Bytes address,
                                       IPv4Bytes netmask) {
  addAddress(link, address, netmask);
}

void FakeNetworkKernel::addIPv6Address(std::string_view link, IPv6Bytes address,
                                       IPv6Bytes netmask) {
  addAddress(link, address, netmask);
}

void FakeNetworkKernel::addAddress(std::string_view link, SocketAddress address,
                                   std::optional<SocketAddress> netmask) {
  const std::lock_guard lock(mutex_);
  addresses_.push_back({linkNamed(link).index, std::move(address), std::move(netmask)});
}

void FakeNetworkKernel::removeAddresses(std::string_view link) {
  const std::lock_guard lock(mutex_);
  const std::uint32_t index = linkNamed(link).index;
  std::erase_if(addresses_, [index](const Address& entry) { return entry.linkIndex == index; });
}

void FakeNetworkKernel::addDefaultRoute(std::string_view link, IPv4Bytes gateway) {
  const std::lock_guard lock(mutex_);
  routes_[positionOf(RouteFamily::ipv4)].push_back(
      {.destination = IPv4Bytes{}, .gateway = gateway, .interfaceIndex = linkNamed(link).index});
}

void FakeNetworkKernel::addRoute(RouteFamily family, RouteRecord route) {
  const std::lock_guard lock(mutex_);
  routes_[positionOf(family)].push_back(std::move(route));
}

void FakeNetworkKernel::clearRoutes() {
  const std::lock_guard lock(mutex_);
  for (auto& table : routes_) table.clear();
}

void FakeNetworkKernel::setAddressEntries(std::vector<AddressEntry> entries) {
  const std::lock_guard lock(mutex_);
  givenEntries_ = std::move(entries);
}

void FakeNetworkKernel::appendLinkRecord(LinkRecord link) {
  const std::lock_guard lock(mutex_);
  extraLinks_.push_back(std::move(link));
}

void FakeNetworkKernel::setBootTime(std::optional<std::chrono::system_clock::time_point> moment) {
  const std::lock_guard lock(mutex_);
  bootTime_ = moment;
}

void FakeNetworkKernel::fail(Table table, std::optional<NetworkKernelError> error) {
  const std::lock_guard lock(mutex_);
  errors_[positionOf(table)] = error;
}

void FakeNetworkKernel::beforeFetching(Table table, std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  beforeFetching_[positionOf(table)] = std::move(work);
}

std::size_t FakeNetworkKernel::fetchCount(Table table) const {
  const std::lock_guard lock(mutex_);
  return fetchCounts_[positionOf(table)];
}

std::size_t FakeNetworkKernel::readingCount() const {
  const std::lock_guard lock(mutex_);
  return readingCount_;
}

std::unique_ptr<NetworkKernelReading> FakeNetworkKernel::beginReading() const {
  const std::lock_guard lock(mutex_);
  ++readingCount_;
  return std::make_unique<Reading>(*this);
}

std::optional<std::chrono::system_clock::time_point> FakeNetworkKernel::bootTime() const {
  const std::lock_guard lock(mutex_);
  return bootTime_;
}

LinkRecord& FakeNetworkKernel::linkNamed(std::string_view name) {
  const auto link = std::ranges::find(links_, name, &LinkRecord::name);
  if (link == links_.end()) {
    fatalError("a test named the link \"" + std::string(name) + "\", which it never added");
  }
  return *link;
}

std::optional<NetworkKernelError> FakeNetworkKernel::beginFetch(Table table) const {
  const std::size_t position = positionOf(table);
  std::function<void()> work;
  {
    const std::lock_guard lock(mutex_);
    ++fetchCounts_[position];
    work = beforeFetching_[position];
  }
  if (work) work();
  const std::lock_guard lock(mutex_);
  return errors_[position];
}

std::vector<AddressEntry> FakeNetworkKernel::currentAddressEntries() const {
  const std::lock_guard lock(mutex_);
  if (givenEntries_) return *givenEntries_;
  std::vector<AddressEntry> entries;
  std::ranges::transform(links_, std::back_inserter(entries), linkEntry);
  std::map<std::uint32_t, std::vector<const Address*>> addressesOfLinks;
  for (const Address& address : addresses_) {
    addressesOfLinks[address.linkIndex].push_back(&address);
  }
  for (const LinkRecord& link : links_) {
    for (const Address* address : addressesOfLinks[link.index]) {
      entries.push_back({.name = link.name,
                         .address = address->address,
                         .netmask = address->netmask,
                         .statistics = std::nullopt});
    }
  }
  return entries;
}

std::vector<LinkRecord> FakeNetworkKernel::currentLinkRecords() const {
  const std::lock_guard lock(mutex_);
  std::vector<LinkRecord> links = links_;
  links.insert(links.end(), extraLinks_.begin(), extraLinks_.end());
  return links;
}

std::map<std::uint32_t, std::string> FakeNetworkKernel::currentNames() const {
  const std::lock_guard lock(mutex_);
  std::map<std::uint32_t, std::string> names;
  for (const LinkRecord& link : links_) names[link.index] = link.name;
  return names;
}

}  // namespace lanternfold
