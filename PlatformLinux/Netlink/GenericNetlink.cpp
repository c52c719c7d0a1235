#include "PlatformLinux/Netlink/GenericNetlink.h"

#include <array>

#include <linux/netlink.h>

namespace lanternfold {

namespace {

constexpr AttributeTable familyTable(std::array{
    numberAttribute<std::uint16_t>(CTRL_ATTR_FAMILY_ID, "CTRL_ATTR_FAMILY_ID",
                                   AttributePresence::required),
});

}  // namespace

RequestBuilder genericRequest(std::uint16_t messageType, std::uint16_t flags,
                              std::uint8_t command) {
  return RequestBuilder(messageType, flags,
                        genlmsghdr{.cmd = command, .version = 1, .reserved = 0});
}

NetlinkRequest genericFamilyRequest(std::string_view familyName) {
  RequestBuilder request = genericRequest(GENL_ID_CTRL, NLM_F_ACK, CTRL_CMD_GETFAMILY);
  request.addText(CTRL_ATTR_FAMILY_NAME, familyName);
  return request.finished();
}

std::expected<std::uint16_t, DecodeError> decodeGenericFamily(const NetlinkMessage& message) {
  const auto attributes = genericAttributes(message, familyTable);
  if (!attributes) return std::unexpected(attributes.error());
  return attributes->number<std::uint16_t>(CTRL_ATTR_FAMILY_ID).value();
}

}  // namespace lanternfold
