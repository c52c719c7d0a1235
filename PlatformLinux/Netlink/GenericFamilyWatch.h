// Follows one family of generic netlink through the messages of an event socket: the family may
// come and go with its module, each time under another message type and other groups.
//
// Made by: `GenericEventSocket`. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

/// What a message is to somebody who listens to one family.
enum class GenericEvent {
  foreign,   ///< of another family, or about one
  ofFamily,  ///< the family's own report
  came,      ///< the family is there, perhaps under new numbers
  went,      ///< the family is gone
  unclear,   ///< about some family, but not to be decoded
};

class GenericFamilyWatch {
 public:
  GenericFamilyWatch(std::string familyName, std::vector<std::string> groupNames);

  [[nodiscard]] const std::string& familyName() const { return familyName_; }

  /// Takes note of the family as the kernel has it now. The numbers of those of its groups that are
  /// listened to; a group that it does not have is left out.
  [[nodiscard]] std::vector<std::uint32_t> found(const GenericFamilyMessage& family);

  struct Verdict {
    GenericEvent event = GenericEvent::foreign;
    /// To be joined, after `came`.
    std::vector<std::uint32_t> groups;
    friend bool operator==(const Verdict&, const Verdict&) = default;
  };
  [[nodiscard]] Verdict take(const NetlinkMessage& message);

 private:
  [[nodiscard]] Verdict takeControl(const NetlinkMessage& message);

  std::string familyName_;
  std::vector<std::string> groupNames_;
  std::optional<std::uint16_t> messageType_;  // none while there is no such family
};

}  // namespace lanternfold
