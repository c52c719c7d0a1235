#include "PlatformLinux/Netlink/AddressMessage.h"

#include <algorithm>
#include <sys/socket.h>

#include <linux/if_addr.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/AddressBytes.h"
#include "PlatformLinux/Netlink/AddressFamily.h"
#include "PlatformLinux/Netlink/AttributeTable.h"

namespace lanternfold {

namespace {

constexpr std::size_t longestAddress = 32;

constexpr AttributeTable addressTable(std::array{
    bytesAttribute(IFA_ADDRESS, "IFA_ADDRESS", 1, longestAddress),
    bytesAttribute(IFA_LOCAL, "IFA_LOCAL", 1, longestAddress),
});

using AddressAttributes = decltype(addressTable)::Attributes;

template <typename Bytes>
Bytes maskOfPrefix(std::uint8_t prefixLength) {
  Bytes mask{};
  const std::size_t whole = std::min<std::size_t>(prefixLength / 8U, mask.size());
  std::fill_n(mask.begin(), whole, std::uint8_t{0xFF});
  if (whole < mask.size()) mask[whole] = static_cast<std::uint8_t>(0xFF00U >> prefixLength % 8U);
  return mask;
}

std::optional<SocketAddress> netmaskOf(const SocketAddress& address, std::uint8_t prefixLength) {
  if (std::holds_alternative<IPv4Bytes>(address)) return ipv4MaskOfPrefix(prefixLength);
  if (std::holds_alternative<IPv6Bytes>(address)) return ipv6MaskOfPrefix(prefixLength);
  return std::nullopt;
}

// On a point-to-point link IFA_ADDRESS is the other end, and IFA_LOCAL this one; elsewhere both are
// this machine's address, and for IPv6 only IFA_ADDRESS is sent.
std::optional<DecodeError> readAddress(std::uint8_t family, const AddressAttributes& attributes,
                                       AddressMessage& message) {
  const bool hasLocal = attributes.has(IFA_LOCAL);
  const auto bytes = attributes.bytes(hasLocal ? IFA_LOCAL : IFA_ADDRESS);
  if (!bytes) return std::nullopt;
  const auto address = socketAddressOf(family, *bytes, hasLocal ? "IFA_LOCAL" : "IFA_ADDRESS");
  if (!address) return address.error();
  message.address = *address;
  message.netmask = netmaskOf(*address, message.prefixLength);
  return std::nullopt;
}

}  // namespace

IPv4Bytes ipv4MaskOfPrefix(std::uint8_t prefixLength) {
  return maskOfPrefix<IPv4Bytes>(prefixLength);
}

IPv6Bytes ipv6MaskOfPrefix(std::uint8_t prefixLength) {
  return maskOfPrefix<IPv6Bytes>(prefixLength);
}

std::expected<AddressMessage, DecodeError> decodeAddressMessage(const NetlinkMessage& message) {
  if (message.type != RTM_NEWADDR && message.type != RTM_DELADDR) {
    return std::unexpected(DecodeError{DecodeProblem::wrongMessage, "nlmsg_type"});
  }
  ByteReader reader(message.payload);
  const auto header = reader.read<ifaddrmsg>();
  if (!header) return std::unexpected(DecodeError{DecodeProblem::truncated, "ifaddrmsg"});
  if (header->ifa_index == 0) {
    return std::unexpected(DecodeError{DecodeProblem::badValue, "ifa_index"});
  }
  if (header->ifa_prefixlen > longestPrefixOf(header->ifa_family)) {
    return std::unexpected(DecodeError{DecodeProblem::badValue, "ifa_prefixlen"});
  }
  const auto attributes = addressTable.parse(reader.takeRest());
  if (!attributes) return std::unexpected(attributes.error());
  AddressMessage address;
  address.isRemoval = message.type == RTM_DELADDR;
  address.interfaceIndex = header->ifa_index;
  address.prefixLength = header->ifa_prefixlen;
  if (const auto error = readAddress(header->ifa_family, *attributes, address)) {
    return std::unexpected(*error);
  }
  return address;
}

std::pair<std::size_t, std::uint32_t> dumpPlace(const AddressMessage& address) {
  return {address.address ? address.address->index() : std::variant_npos, address.interfaceIndex};
}

std::tuple<std::uint32_t, std::size_t, IPv6Bytes, std::uint8_t> dumpIdentity(
    const AddressMessage& address) {
  IPv6Bytes bytes{};
  if (address.address) {
    if (const auto* ipv4 = std::get_if<IPv4Bytes>(&*address.address)) {
      std::ranges::copy(*ipv4, bytes.begin());
    } else if (const auto* ipv6 = std::get_if<IPv6Bytes>(&*address.address)) {
      bytes = *ipv6;
    }
  }
  return {address.interfaceIndex, dumpPlace(address).first, bytes, address.prefixLength};
}

}  // namespace lanternfold
