// What all families of generic netlink share: how a request begins, how an answer does, and the
// look-up of a family: its message type, and the groups that it reports to.
//
// Read by: `EthtoolMessage`, `WirelessInterfaceMessage`, the decoders of Wi-Fi and the readers that
// ask them; `GenericFamilyWatch`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

/// A group that a family reports to.
struct GenericGroup {
  std::string name;
  std::uint32_t number = 0;  ///< what is joined; another one each time the family comes
  friend bool operator==(const GenericGroup&, const GenericGroup&) = default;
};

/// A family as the kernel has it now.
struct GenericFamilyMessage {
  std::uint16_t messageType = 0;
  std::string name;
  std::vector<GenericGroup> groups;
  friend bool operator==(const GenericFamilyMessage&, const GenericFamilyMessage&) = default;
};

/// From the answer, and from the kernel's reports of families that come and go. Groups without a
/// name or a number, and those beyond the 32nd, are left out. Errors: truncated "genlmsghdr"; those
/// of the attributes, nested ones too.
[[nodiscard]] std::expected<GenericFamilyMessage, DecodeError> decodeGenericFamily(
    const NetlinkMessage& message);

/// The command of a message of any family; none when it is too short for one.
[[nodiscard]] std::optional<std::uint8_t> genericCommand(const NetlinkMessage& message);

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
