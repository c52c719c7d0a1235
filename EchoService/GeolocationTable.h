// Which provider and country a network belongs to.
//
// Made by: `parseGeolocationTable`. Read by: `EchoResponder`.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "EchoService/IpNetwork.h"

namespace lanternfold {

/// UTF-8 without control characters.
struct GeolocationEntry {
  std::string isp;          ///< the provider's name
  std::string countryCode;  ///< two upper-case letters
  std::string as;           ///< number and name of the autonomous system; may be empty
  friend bool operator==(const GeolocationEntry&, const GeolocationEntry&) = default;
};

class GeolocationTable {
 public:
  /// Whether the network was new; the table stays as it is when it was not.
  bool insert(const IpNetwork& network, const GeolocationEntry& entry);

  /// Of the longest network that contains the address; none when none does.
  [[nodiscard]] std::optional<GeolocationEntry> find(const IpAddress& address) const;

  [[nodiscard]] std::size_t size() const { return entries_.size(); }

 private:
  std::map<IpNetwork, GeolocationEntry> entries_;
  /// The lengths that occur, of IPv4 and of IPv6: as many look-ups does a search take at the most.
  std::array<std::set<unsigned>, 2> lengths_;
};

}  // namespace lanternfold
