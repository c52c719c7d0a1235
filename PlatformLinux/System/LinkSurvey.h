// What this machine's links are: the kernel's link table, looked up in the device tree and nl80211
// where the link stands on a device, and classified.
//
// Made by: the interface naming, the adapter list and the path monitor.
#pragma once

#include <expected>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/NetworkKernel.h"
#include "PlatformLinux/Adapters/DeviceTree.h"
#include "PlatformLinux/Adapters/LinkClassification.h"
#include "PlatformLinux/Netlink/LinkMessage.h"
#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

struct SurveyedLink {
  LinkMessage link;
  LinkClass linkClass;
  friend bool operator==(const SurveyedLink&, const SurveyedLink&) = default;
};

/// Stateless: every question is one dump. Links that were made in software, of
/// which there may be thousands, cost nothing beyond it. Speaks of the network namespace of the
/// calling thread.
class LinkSurvey {
 public:
  explicit LinkSurvey(DeviceTree tree = DeviceTree()) : tree_(std::move(tree)) {}

  /// Every link, in the kernel's order. Of a table that kept changing while it was read, every
  /// link that was there all the time. Errors: refused, malformed, failed.
  [[nodiscard]] std::expected<std::vector<SurveyedLink>, NetworkKernelError> allLinks() const;
  /// The same over a socket that is open already.
  [[nodiscard]] std::expected<std::vector<SurveyedLink>, NetworkKernelError> allLinks(
      NetlinkSocket& socket) const;

  /// The link of exactly this name, none when there is none or it cannot be asked for.
  [[nodiscard]] std::optional<SurveyedLink> linkNamed(std::string_view name) const;

 private:
  DeviceTree tree_;
};

}  // namespace lanternfold
