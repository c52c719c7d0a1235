// One address of a link as RTM_NEWADDR describes it, or its end by RTM_DELADDR.
//
// Made by: `decodeAddressMessage` from a dump or an event. Read by: the kernel tables.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <tuple>
#include <utility>

#include "Platform/SocketAddress.h"
#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

struct AddressMessage {
  /// RTM_DELADDR instead of RTM_NEWADDR.
  bool isRemoval = false;
  std::uint32_t interfaceIndex = 0;  ///< never 0
  /// This machine's own end: IFA_LOCAL, or IFA_ADDRESS where that is not sent. `OtherAddress` for a
  /// family other than IPv4 and IPv6; absent when the kernel sent neither attribute.
  std::optional<SocketAddress> address;
  /// The mask that belongs to the prefix length; of the family of `address`, absent with it and for
  /// other families.
  std::optional<SocketAddress> netmask;
  std::uint8_t prefixLength = 0;  ///< bits, at most those of the family
  friend bool operator==(const AddressMessage&, const AddressMessage&) = default;
};

/// Errors name the header, field or attribute; a message of another type is wrongMessage
/// "nlmsg_type".
[[nodiscard]] std::expected<AddressMessage, DecodeError> decodeAddressMessage(
    const NetlinkMessage& message);

/// Where a dump passes the address by: the kernel walks one family after the other, each by links.
[[nodiscard]] std::pair<std::size_t, std::uint32_t> dumpPlace(const AddressMessage& address);
/// What tells the address from all others of the machine: link, family, bytes and prefix length.
[[nodiscard]] std::tuple<std::uint32_t, std::size_t, IPv6Bytes, std::uint8_t> dumpIdentity(
    const AddressMessage& address);

/// The mask of `prefixLength` leading one bits; bits beyond the family's size are left out.
[[nodiscard]] IPv4Bytes ipv4MaskOfPrefix(std::uint8_t prefixLength);
[[nodiscard]] IPv6Bytes ipv6MaskOfPrefix(std::uint8_t prefixLength);

}  // namespace lanternfold
