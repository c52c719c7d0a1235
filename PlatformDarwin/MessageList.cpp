#include "PlatformDarwin/MessageList.h"

#include <algorithm>

namespace lanternfold::darwin {
namespace {

// What all headers share: a 16-bit length, a version, a type.
constexpr std::size_t sharedHeaderSize = 4;
constexpr std::size_t typeOffset = 3;

// In every socket address: its length, its family.
constexpr std::size_t lengthOffset = 0;
constexpr std::size_t familyOffset = 1;
// In an IPv4 address: 2 bytes of port before the address; in an IPv6 one also 4 of flow label.
constexpr std::size_t ipv4Offset = 4;
constexpr std::size_t ipv6Offset = 8;

std::size_t advance(std::uint8_t length, AddressPadding padding) {
  constexpr std::size_t unit = 8;
  if (padding == AddressPadding::none) return length;
  return std::max<std::size_t>((length + unit - 1) / unit, 1) * unit;
}

template <typename Bytes>
std::optional<SocketAddress> copied(MessageBytes address, std::size_t offset) {
  Bytes result;
  const auto part = address.slice(offset, result.size());
  if (!part) return std::nullopt;
  std::ranges::transform(part->bytes(), result.begin(),
                         [](std::byte byte) { return std::to_integer<std::uint8_t>(byte); });
  return result;
}

}  // namespace

std::expected<std::vector<RoutingMessage>, NetworkKernelError> splitMessages(
    std::span<const std::byte> dump) {
  std::vector<RoutingMessage> messages;
  MessageBytes rest(dump);
  while (rest.size() > 0) {
    const auto length = rest.number<std::uint16_t>(0);
    if (!length || *length < sharedHeaderSize) {
      return std::unexpected(NetworkKernelError::malformed);
    }
    const auto message = rest.slice(0, *length);
    if (!message) return std::unexpected(NetworkKernelError::malformed);
    messages.push_back({*message->number<std::uint8_t>(typeOffset), *message});
    rest = *rest.from(*length);
  }
  return messages;
}

AddressSlots splitAddresses(MessageBytes area, std::uint32_t presence, AddressPadding padding) {
  AddressSlots slots;
  std::size_t offset = 0;
  for (std::size_t bit = 0; bit < slots.size(); ++bit) {
    if ((presence & (1U << bit)) == 0) continue;
    const auto length = area.number<std::uint8_t>(offset + lengthOffset);
    if (!length) break;
    const std::size_t step = advance(*length, padding);
    slots[bit] = area.slice(offset, step);
    if (!slots[bit]) break;
    offset += step;
  }
  return slots;
}

std::optional<std::uint8_t> familyOf(MessageBytes address) {
  return address.number<std::uint8_t>(familyOffset);
}

std::optional<SocketAddress> inetAddress(MessageBytes address) {
  const auto family = familyOf(address);
  if (!family) return std::nullopt;
  if (*family == familyIPv4) return copied<IPv4Bytes>(address, ipv4Offset);
  if (*family == familyIPv6) return copied<IPv6Bytes>(address, ipv6Offset);
  return OtherAddress{};
}

}  // namespace lanternfold::darwin
