// Which interfaces are Wi-Fi, and what each does.
//
// Made by: `LinkSurvey`, one per survey. Threads: one at a time.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "PlatformLinux/Adapters/LinkFacts.h"

namespace lanternfold {

/// Asks nl80211 once, for all interfaces, when the first one is asked about.
class WirelessRoles {
 public:
  /// None for an interface that is not Wi-Fi, and for every one when the kernel has no nl80211.
  [[nodiscard]] std::optional<WirelessRole> roleOf(std::uint32_t interfaceIndex);

  /// Whether one of them carries the machine's traffic, or could.
  [[nodiscard]] bool hasNetworks();

 private:
  using Roles = std::map<std::uint32_t, WirelessRole>;

  [[nodiscard]] const Roles& roles();

  std::optional<Roles> roles_;
};

}  // namespace lanternfold
