#include "EchoService/GeolocationTable.h"

#include <ranges>

namespace lanternfold {

bool GeolocationTable::insert(const IpNetwork& network, const GeolocationEntry& entry) {
  lengths_[network.base.index()].insert(network.prefixLength);
  return entries_.try_emplace(network, entry).second;
}

std::optional<GeolocationEntry> GeolocationTable::find(const IpAddress& address) const {
  for (const unsigned length : std::views::reverse(lengths_[address.index()])) {
    const auto entry = entries_.find(networkOf(address, length));
    if (entry != entries_.end()) return entry->second;
  }
  return std::nullopt;
}

}  // namespace lanternfold
