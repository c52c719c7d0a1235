#include "PlatformLinux/Netlink/GenericFamilyWatch.h"

#include <algorithm>
#include <utility>

namespace lanternfold {

GenericFamilyWatch::GenericFamilyWatch(std::string familyName, std::vector<std::string> groupNames)
    : familyName_(std::move(familyName)), groupNames_(std::move(groupNames)) {}

std::vector<std::uint32_t> GenericFamilyWatch::found(const GenericFamilyMessage& family) {
  messageType_ = family.messageType;
  std::vector<std::uint32_t> numbers;
  for (const GenericGroup& group : family.groups) {
    if (std::ranges::find(groupNames_, group.name) != groupNames_.end()) {
      numbers.push_back(group.number);
    }
  }
  return numbers;
}

GenericFamilyWatch::Verdict GenericFamilyWatch::take(const NetlinkMessage& message) {
  if (message.type == GENL_ID_CTRL) return takeControl(message);
  const bool isOfFamily = messageType_ && message.type == *messageType_;
  return {.event = isOfFamily ? GenericEvent::ofFamily : GenericEvent::foreign, .groups = {}};
}

// The reports of single groups (CTRL_CMD_NEWMCAST_GRP) repeat what that of the family says.
GenericFamilyWatch::Verdict GenericFamilyWatch::takeControl(const NetlinkMessage& message) {
  const auto command = genericCommand(message);
  if (!command) return {.event = GenericEvent::unclear, .groups = {}};
  if (*command != CTRL_CMD_NEWFAMILY && *command != CTRL_CMD_DELFAMILY) return {};
  const auto family = decodeGenericFamily(message);
  if (!family) return {.event = GenericEvent::unclear, .groups = {}};
  if (family->name != familyName_) return {};
  if (*command == CTRL_CMD_NEWFAMILY)
    return {.event = GenericEvent::came, .groups = found(*family)};
  messageType_.reset();
  return {.event = GenericEvent::went, .groups = {}};
}

}  // namespace lanternfold
