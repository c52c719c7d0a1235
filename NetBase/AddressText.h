// Addresses as text, in the one form that the whole system shows them in. Pure; nothing fails.
#pragma once

#include <string>

#include "Platform/SocketAddress.h"

namespace lanternfold {

/// Dotted quad, such as "192.168.1.20".
[[nodiscard]] std::string ipv4Text(const IPv4Bytes& address);

/// As the C library writes it (RFC 5952: lower case, the longest run of zeros shortened).
[[nodiscard]] std::string ipv6Text(const IPv6Bytes& address);

/// Upper-case hexadecimal pairs with colons, such as "02:42:AC:11:00:02"; empty for no bytes.
[[nodiscard]] std::string hardwareAddressText(const LinkAddress& address);

}  // namespace lanternfold
