// Where the portal's bus is, who asks there, and how long anybody is waited for.
//
// Made by: the composition. Read by: `BusLocationPortal` and its conversations.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "PlatformLinux/Location/PortalRules.h"

namespace lanternfold {

struct PortalLimits {
  std::chrono::milliseconds reply{5'000};                  ///< of what needs nobody's answer
  std::chrono::milliseconds answer = longestPortalAnswer;  ///< of the user's
};

struct PortalSurroundings {
  std::optional<std::string> busAddress;  ///< none without a session
  std::string applicationId;              ///< of the sandbox; may be empty
  PortalLimits limits;
};

/// The address of this user's session bus, as the environment names it.
[[nodiscard]] std::optional<std::string> sessionBusAddress();

}  // namespace lanternfold
