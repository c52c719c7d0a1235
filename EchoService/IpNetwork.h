// A network of internet addresses: an address and how many of its leading bits count.
//
// Made by: the command line (--trust) and the geolocation table's reader. Read by: the forwarding
// rule and the geolocation table.
#pragma once

#include <compare>
#include <expected>
#include <string>
#include <string_view>

#include "EchoService/IpAddress.h"

namespace lanternfold {

struct IpNetwork {
  IpAddress base;         ///< every bit beyond the prefix is zero
  unsigned prefixLength;  ///< 0 to 32 for IPv4, 0 to 128 for IPv6

  /// Addresses of the other family are never contained.
  [[nodiscard]] bool contains(const IpAddress& address) const;

  friend auto operator<=>(const IpNetwork&, const IpNetwork&) = default;
};

/// How many bits an address of this family has: 32 or 128.
[[nodiscard]] unsigned bitCount(const IpAddress& address);

/// The network of that length in which the address lies. `prefixLength` is at most `bitCount`.
[[nodiscard]] IpNetwork networkOf(const IpAddress& address, unsigned prefixLength);

/// "192.0.2.0/24", "2001:db8::/32", or an address alone for a network of that one address. The
/// error is what is wrong with the text, to be said of it: "is neither an address nor a network".
[[nodiscard]] std::expected<IpNetwork, std::string> parseIpNetwork(std::string_view text);

}  // namespace lanternfold
