// Addresses as plain bytes, with neutral families: no operating system's numbers appear here.
//
// Made by: the decoders of each platform. Read by: `SNUtils` and everything above it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

namespace lanternfold {

/// The four bytes of an IPv4 address or mask, in network order.
using IPv4Bytes = std::array<std::uint8_t, 4>;
/// The sixteen bytes of an IPv6 address or mask, in network order.
using IPv6Bytes = std::array<std::uint8_t, 16>;

/// A link-layer address. Zero bytes long for a link without one (a tunnel); six for Ethernet.
struct LinkAddress {
  std::vector<std::uint8_t> bytes;
  friend bool operator==(const LinkAddress&, const LinkAddress&) = default;
};

/// An address of a family that this system does not read; only that it was there is known.
struct OtherAddress {
  friend bool operator==(const OtherAddress&, const OtherAddress&) = default;
};

using SocketAddress = std::variant<IPv4Bytes, IPv6Bytes, LinkAddress, OtherAddress>;

}  // namespace lanternfold
