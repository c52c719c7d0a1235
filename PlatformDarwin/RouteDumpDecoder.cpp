#include "PlatformDarwin/RouteDumpDecoder.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "PlatformDarwin/MessageList.h"

namespace lanternfold::darwin {
namespace {

// rt_msghdr.
constexpr std::size_t headerSize = 92;
constexpr std::size_t indexOffset = 4;
constexpr std::size_t presenceOffset = 12;

// Bits of the presence set, and so positions of the slots.
constexpr std::size_t destinationSlot = 0;
constexpr std::size_t gatewaySlot = 1;

std::optional<SocketAddress> addressIn(const std::optional<MessageBytes>& slot) {
  return slot ? inetAddress(*slot) : std::nullopt;
}

/// `message` holds at least the header, so no read inside it fails.
RouteRecord routeRecord(MessageBytes message, AddressPadding padding) {
  const auto presence = *message.number<std::uint32_t>(presenceOffset);
  const AddressSlots slots = splitAddresses(*message.from(headerSize), presence, padding);
  return {.destination = addressIn(slots[destinationSlot]),
          .gateway = addressIn(slots[gatewaySlot]),
          .interfaceIndex = *message.number<std::uint16_t>(indexOffset)};
}

}  // namespace

std::expected<std::vector<RouteRecord>, NetworkKernelError> decodeRouteDump(
    std::span<const std::byte> dump, RouteFamily family) {
  const auto messages = splitMessages(dump);
  if (!messages) return std::unexpected(messages.error());
  const AddressPadding padding =
      family == RouteFamily::ipv4 ? AddressPadding::toEightBytes : AddressPadding::none;
  std::vector<RouteRecord> routes;
  for (const RoutingMessage& message : *messages) {
    if (message.bytes.size() < headerSize) return std::unexpected(NetworkKernelError::malformed);
    RouteRecord route = routeRecord(message.bytes, padding);
    if (route.gateway) routes.push_back(std::move(route));
  }
  return routes;
}

}  // namespace lanternfold::darwin
