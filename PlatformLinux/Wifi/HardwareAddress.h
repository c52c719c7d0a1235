// A hardware address as nl80211 carries it.
//
// Made by: the decoders of this folder. Read by: the report.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "PlatformLinux/Netlink/AttributeTable.h"

namespace lanternfold {

using HardwareAddress = std::array<std::uint8_t, 6>;

/// The attribute's address; none when it is not there. The table says that it is of six bytes.
template <typename Attributes>
[[nodiscard]] std::optional<HardwareAddress> hardwareAddressOf(const Attributes& attributes,
                                                               std::uint16_t type) {
  const auto bytes = attributes.bytes(type);
  return bytes ? ByteReader(*bytes).read<HardwareAddress>() : std::nullopt;
}

}  // namespace lanternfold
