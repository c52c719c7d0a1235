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
  /// How long a reader of the knowledge is kept waiting for the first look: more than a portal
  /// takes that runs, on a busy machine too, and no more than a user bears of one that hangs.
  std::chrono::milliseconds look{10'000};
  /// Of what needs nobody's answer: as long as a bus waits for a service that it has to start. A
  /// look that takes longer than its reader waits ends later, and is heard of as a change.
  std::chrono::milliseconds reply{25'000};
  std::chrono::milliseconds answer = longestPortalAnswer;  ///< of the user's
};

struct PortalSurroundings {
  std::optional<std::string> busAddress;  ///< none without a session
  std::string applicationId;              ///< of the sandbox; may be empty
  PortalLimits limits;
};

}  // namespace lanternfold
