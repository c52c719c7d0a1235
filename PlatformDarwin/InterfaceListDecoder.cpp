#include "PlatformDarwin/InterfaceListDecoder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "PlatformDarwin/MessageList.h"

namespace lanternfold::darwin {
namespace {

constexpr std::uint8_t typeInterfaceInfo2 = 18;  // RTM_IFINFO2

// if_msghdr2: a fixed part, then the statistics (if_data64); the addresses follow at once.
constexpr std::size_t headerSize = 160;
constexpr std::size_t indexOffset = 12;
constexpr std::size_t statisticsOffset = 32;

// Offsets inside if_data64.
constexpr std::size_t typeOffset = 0;
constexpr std::size_t physicalOffset = 2;
constexpr std::size_t mtuOffset = 8;
constexpr std::size_t baudrateOffset = 16;
constexpr std::size_t recvPacketsOffset = 24;
constexpr std::size_t recvErrorsOffset = 32;
constexpr std::size_t sentPacketsOffset = 40;
constexpr std::size_t sentErrorsOffset = 48;
constexpr std::size_t collisionsOffset = 56;
constexpr std::size_t recvBytesOffset = 64;
constexpr std::size_t sentBytesOffset = 72;

// Offsets inside sockaddr_dl: the data holds the name and then the hardware address.
constexpr std::size_t nameLengthOffset = 5;
constexpr std::size_t addressLengthOffset = 6;
constexpr std::size_t dataOffset = 8;

constexpr std::size_t longestName = 15;  // IFNAMSIZ is 16 with the terminator

/// The link-level address at the start of `area`, as long as it says it is; none when it is of
/// another family or does not lie inside.
std::optional<MessageBytes> linkLevelAddress(MessageBytes area) {
  const auto length = area.number<std::uint8_t>(0);
  if (!length) return std::nullopt;
  const auto address = area.slice(0, *length);
  if (!address || familyOf(*address) != familyLink) return std::nullopt;
  return address;
}

std::optional<std::string> linkName(MessageBytes address) {
  const auto length = address.number<std::uint8_t>(nameLengthOffset);
  if (!length || *length > longestName) return std::nullopt;
  const auto text = address.slice(dataOffset, *length);
  if (!text) return std::nullopt;
  std::string name;
  for (const std::byte byte : text->bytes()) {
    if (byte == std::byte{0}) break;  // a name is a C string and ends at its first zero
    name += static_cast<char>(byte);
  }
  return name.empty() ? std::nullopt : std::optional(std::move(name));
}

/// The bytes behind the name; zero of them when they do not lie inside or are more than any link
/// layer's.
LinkAddress hardwareAddress(MessageBytes address) {
  const auto nameLength = address.number<std::uint8_t>(nameLengthOffset);
  const auto length = address.number<std::uint8_t>(addressLengthOffset);
  if (!nameLength || !length || *length > LinkAddressBytes::maximumSize) return {};
  const auto part = address.slice(dataOffset + *nameLength, *length);
  if (!part) return {};
  std::array<std::uint8_t, LinkAddressBytes::maximumSize> bytes{};
  std::ranges::transform(part->bytes(), bytes.begin(),
                         [](std::byte byte) { return std::to_integer<std::uint8_t>(byte); });
  return {LinkAddressBytes(std::span(bytes).first(*length))};
}

/// `message` holds at least the header, so no read inside it fails.
void readStatistics(MessageBytes message, LinkRecord& link) {
  const MessageBytes statistics = *message.from(statisticsOffset);
  const auto counter = [&statistics](std::size_t offset) {
    return *statistics.number<std::uint64_t>(offset);
  };
  link.type = *statistics.number<std::uint8_t>(typeOffset);
  link.physical = *statistics.number<std::uint8_t>(physicalOffset);
  link.mtu = *statistics.number<std::uint32_t>(mtuOffset);
  link.baudrate = counter(baudrateOffset);
  link.recvBytes = counter(recvBytesOffset);
  link.sentBytes = counter(sentBytesOffset);
  link.recvPackets = counter(recvPacketsOffset);
  link.sentPackets = counter(sentPacketsOffset);
  link.recvErrors = counter(recvErrorsOffset);
  link.sentErrors = counter(sentErrorsOffset);
  link.collisions = counter(collisionsOffset);
}

/// None when the message names no link.
std::optional<LinkRecord> linkRecord(MessageBytes message) {
  const auto address = linkLevelAddress(*message.from(headerSize));
  if (!address) return std::nullopt;
  auto name = linkName(*address);
  if (!name) return std::nullopt;
  LinkRecord link;
  link.name = *std::move(name);
  link.index = *message.number<std::uint16_t>(indexOffset);
  link.hardwareAddress = hardwareAddress(*address);
  readStatistics(message, link);
  return link;
}

}  // namespace

std::expected<std::vector<LinkRecord>, NetworkKernelError> decodeInterfaceList(
    std::span<const std::byte> dump) {
  const auto messages = splitMessages(dump);
  if (!messages) return std::unexpected(messages.error());
  std::vector<LinkRecord> links;
  for (const RoutingMessage& message : *messages) {
    if (message.type != typeInterfaceInfo2) continue;
    if (message.bytes.size() < headerSize) return std::unexpected(NetworkKernelError::malformed);
    auto link = linkRecord(message.bytes);
    if (link) links.push_back(*std::move(link));
  }
  return links;
}

}  // namespace lanternfold::darwin
