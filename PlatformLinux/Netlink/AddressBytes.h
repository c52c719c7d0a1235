// Address attributes to neutral addresses.
//
// Made by: the kernel. Read by: the address and route decoders.
#pragma once

#include <cstdint>
#include <expected>
#include <span>
#include <string_view>

#include "Platform/SocketAddress.h"
#include "PlatformLinux/Netlink/DecodeError.h"

namespace lanternfold {

/// The address in `bytes` of a family AF_INET or AF_INET6, `OtherAddress` for other families.
/// Error: wrongSize with `subject` when there are fewer or more bytes than the family has.
[[nodiscard]] std::expected<SocketAddress, DecodeError> socketAddressOf(
    std::uint16_t family, std::span<const std::uint8_t> bytes, std::string_view subject);

}  // namespace lanternfold
