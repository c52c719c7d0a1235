// Addresses as plain bytes, with neutral families: no operating system's numbers appear here.
//
// Made by: the decoders of each platform. Read by: `SNUtils` and everything above it.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <variant>

#include "Support/FatalError.h"

namespace lanternfold {

/// The four bytes of an IPv4 address or mask, in network order.
using IPv4Bytes = std::array<std::uint8_t, 4>;
/// The sixteen bytes of an IPv6 address or mask, in network order.
using IPv6Bytes = std::array<std::uint8_t, 16>;

/// The bytes of a link-layer address, held in place: a machine with ten thousand links has as many
/// of them, twice. Whoever makes one of more than `maximumSize` bytes stops the program.
class LinkAddressBytes {
 public:
  /// No link layer has longer addresses.
  static constexpr std::size_t maximumSize = 32;

  constexpr LinkAddressBytes() = default;
  constexpr LinkAddressBytes(std::initializer_list<std::uint8_t> bytes)
      : LinkAddressBytes(std::span(bytes.begin(), bytes.size())) {}
  constexpr explicit LinkAddressBytes(std::span<const std::uint8_t> bytes)
      : size_(static_cast<std::uint8_t>(bytes.size())) {
    if (bytes.size() > maximumSize) fatalError("a link address is longer than any link layer's");
    std::ranges::copy(bytes, bytes_.begin());
  }

  [[nodiscard]] constexpr const std::uint8_t* begin() const { return bytes_.data(); }
  [[nodiscard]] constexpr const std::uint8_t* end() const { return bytes_.data() + size_; }
  [[nodiscard]] constexpr std::size_t size() const { return size_; }
  [[nodiscard]] constexpr bool empty() const { return size_ == 0; }

  friend bool operator==(const LinkAddressBytes&, const LinkAddressBytes&) = default;

 private:
  std::array<std::uint8_t, maximumSize> bytes_{};  // zero from `size_` on
  std::uint8_t size_ = 0;
};

/// A link-layer address. Zero bytes long for a link without one (a tunnel); six for Ethernet.
struct LinkAddress {
  LinkAddressBytes bytes;
  friend bool operator==(const LinkAddress&, const LinkAddress&) = default;
};

/// An address of a family that this system does not read; only that it was there is known.
struct OtherAddress {
  friend bool operator==(const OtherAddress&, const OtherAddress&) = default;
};

using SocketAddress = std::variant<IPv4Bytes, IPv6Bytes, LinkAddress, OtherAddress>;

}  // namespace lanternfold
