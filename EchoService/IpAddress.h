// An internet address of either family, as a value.
//
// Made by: the listeners, for a peer, and from texts. Read by: the forwarding rule, the geolocation
// table and the answers.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "Platform/SocketAddress.h"

namespace lanternfold {

using IpAddress = std::variant<IPv4Bytes, IPv6Bytes>;

/// Without brackets, port and scope; an IPv4 address in IPv6 form comes as IPv4. None for anything
/// else.
[[nodiscard]] std::optional<IpAddress> parseIpAddress(std::string_view text);

/// Dotted quad, or as RFC 5952 has it.
[[nodiscard]] std::string ipAddressText(const IpAddress& address);

/// `::ffff:192.0.2.1` as the IPv4 address that it stands for; every other address as it is.
[[nodiscard]] IpAddress withoutMapping(const IpAddress& address);

}  // namespace lanternfold
