// Addresses as text, in the one form that the whole system shows them in, and back. Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/SocketAddress.h"

namespace lanternfold {

/// Dotted quad, such as "192.168.1.20".
[[nodiscard]] std::string ipv4Text(const IPv4Bytes& address);

/// As the C library writes it (RFC 5952: lower case, the longest run of zeros shortened).
[[nodiscard]] std::string ipv6Text(const IPv6Bytes& address);

/// Upper-case hexadecimal pairs with colons, such as "02:42:AC:11:00:02"; empty for no bytes.
[[nodiscard]] std::string hardwareAddressText(const LinkAddress& address);

/// Four decimal numbers of 0 to 255 without leading zeros, separated by full stops; none for
/// anything else.
[[nodiscard]] std::optional<IPv4Bytes> ipv4OfText(std::string_view text);

/// Any of the forms of RFC 4291, without brackets and without a scope; none for anything else.
[[nodiscard]] std::optional<IPv6Bytes> ipv6OfText(std::string_view text);

}  // namespace lanternfold
