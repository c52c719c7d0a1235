// What all families of generic netlink share: how a request begins, how an answer does, and the
// look-up of a family's message type.
//
// Read by: `EthtoolMessage`, `WirelessInterfaceMessage` and the readers that ask them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string_view>

#include <linux/genetlink.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/Netlink/RequestBuilder.h"

namespace lanternfold {

/// A request of a family's command. `messageType` is that of the family; `flags` are added to
/// NLM_F_REQUEST.
[[nodiscard]] RequestBuilder genericRequest(std::uint16_t messageType, std::uint16_t flags,
                                            std::uint8_t command);

/// CTRL_CMD_GETFAMILY: which message type the family ("nl80211", "ethtool") has in this kernel. The
/// answer is one message and an acknowledgment; a kernel without the family refuses.
[[nodiscard]] NetlinkRequest genericFamilyRequest(std::string_view familyName);

/// The message type in the answer. Errors: truncated "genlmsghdr"; those of the attributes.
[[nodiscard]] std::expected<std::uint16_t, DecodeError> decodeGenericFamily(
    const NetlinkMessage& message);

/// The attributes behind the header that every generic message begins with.
template <std::size_t Count>
[[nodiscard]] std::expected<AttributeSet<Count>, DecodeError> genericAttributes(
    const NetlinkMessage& message, const AttributeTable<Count>& table) {
  ByteReader reader(message.payload);
  if (!reader.read<genlmsghdr>()) {
    return std::unexpected(DecodeError{DecodeProblem::truncated, "genlmsghdr"});
  }
  return table.parse(reader.takeRest());
}

}  // namespace lanternfold
