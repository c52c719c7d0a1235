// A dump as a list of routing messages, and the socket addresses inside one.
//
// Read by: the decoders of interface lists and route dumps.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <vector>

#include "Platform/NetworkKernel.h"
#include "Platform/SocketAddress.h"
#include "PlatformDarwin/MessageBytes.h"

namespace lanternfold::darwin {

/// One message, header included; reaches exactly to its stated length.
struct RoutingMessage {
  std::uint8_t type = 0;
  MessageBytes bytes;
};

/// Cuts a dump at the lengths that stand at the start of every message. Fails with `malformed` when
/// a length is shorter than the part that all headers share (so also when it is zero) or reaches
/// past the end: what follows could not be told from noise.
[[nodiscard]] std::expected<std::vector<RoutingMessage>, NetworkKernelError> splitMessages(
    std::span<const std::byte> dump);

/// By how much a socket address advances the walk to the next one.
enum class AddressPadding {
  toEightBytes,  ///< its length rounded up to a multiple of 8, where a length of zero counts as 8
  none,          ///< its exact length
};

/// Up to eight socket addresses; position N holds that of bit N, none when the bit is not set or
/// the address does not lie inside the message. Each reaches to where the next one begins.
using AddressSlots = std::array<std::optional<MessageBytes>, 8>;

/// Walks the addresses that follow a header. `presence` is the bit set of the addresses that are
/// there. An address past the end ends the walk: it and those after it are absent.
[[nodiscard]] AddressSlots splitAddresses(MessageBytes area, std::uint32_t presence,
                                          AddressPadding padding);

// Families as that kernel numbers them.
inline constexpr std::uint8_t familyIPv4 = 2;
inline constexpr std::uint8_t familyLink = 18;
inline constexpr std::uint8_t familyIPv6 = 30;

/// The family that stands in the second byte of a socket address; none when it is cut before.
[[nodiscard]] std::optional<std::uint8_t> familyOf(MessageBytes address);

/// The address in neutral form: IPv4 and IPv6 with their bytes, everything else as `OtherAddress`.
/// None when it is cut before its last byte.
[[nodiscard]] std::optional<SocketAddress> inetAddress(MessageBytes address);

}  // namespace lanternfold::darwin
