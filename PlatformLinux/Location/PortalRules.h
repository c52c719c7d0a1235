// What the location portal and its permission store say, and what that means for the consent. Pure.
//
// Read by: the portal's side of the bus, `PortalLocationConsent`, the `location` commands.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "PlatformLinux/Location/ConsentText.h"

namespace lanternfold {

/// A user who has not answered by then is no longer waited for.
inline constexpr std::chrono::minutes longestPortalAnswer{10};

/// How a question to the portal ended.
enum class PortalOutcome {
  granted,   ///< the user, or what he decided before
  refused,   ///< the same
  ended,     ///< closed by nobody's decision, or the machine has no location service
  offered,   ///< nobody was asked: there is a portal that could be
  noBus,     ///< the session bus cannot be reached
  missing,   ///< nobody on the bus offers the portal
  disabled,  ///< the system has location switched off
  silent,    ///< no answer within the limit
  vanished,  ///< whoever was asked went away
  garbled,   ///< an answer that no portal gives
  failed,    ///< another error
};

/// A granted or refused question, which is recorded.
[[nodiscard]] bool isDecision(PortalOutcome outcome);

/// Whether, after this, the user has nobody left to give consent to.
[[nodiscard]] bool isOutOfReach(PortalOutcome outcome);

/// Of a question that has brought no decision: why not, and what to do; a sentence without its
/// beginning capital and its full stop.
[[nodiscard]] std::string_view sentenceOf(PortalOutcome outcome);

/// The number in a `Response`.
[[nodiscard]] PortalOutcome outcomeOfResponse(std::uint32_t response);

/// An error by its name on the bus.
[[nodiscard]] PortalOutcome outcomeOfError(std::string_view errorName);

/// The path that the portal gives an object of the caller `uniqueName` (":1.42"); `kind` is
/// "request" or "session".
[[nodiscard]] std::string portalPath(std::string_view kind, std::string_view uniqueName,
                                     std::string_view token);

/// What the permission store has of an application.
enum class StoredPermission {
  unobservable,  ///< nobody answers: the usual case inside a sandbox
  absent,        ///< no decision
  refused,
  granted,
};

/// By application: an accuracy and when it was last used. Another shape counts as absent, as it
/// does for the portal.
using PermissionTable = std::map<std::string, std::vector<std::string>>;
[[nodiscard]] StoredPermission storedPermissionOf(const PermissionTable& table,
                                                  const std::string& applicationId);

/// After a look that was answered with this error, when `known` is what the last look found. A name
/// that the bus does not show is nobody; anybody else has had his chance, and says yes to nothing.
[[nodiscard]] StoredPermission storedPermissionAfterError(std::string_view errorName,
                                                          StoredPermission known);

/// What can be known without asking the user.
struct PortalKnowledge {
  /// `offered` when the portal is there; else why it is not.
  PortalOutcome portal = PortalOutcome::silent;
  StoredPermission stored = StoredPermission::unobservable;

  friend bool operator==(const PortalKnowledge&, const PortalKnowledge&) = default;
};

/// The value of `LocationConsent::authorizationStatus` in a sandbox: 0, 1, 2 or 4. Both have to say
/// yes: the record is what this program knows of the portal's answers and what the user withholds
/// beyond them; the store, where it is observable, may have taken a consent back.
[[nodiscard]] std::int32_t sandboxedStatus(ConsentDecision recorded,
                                           const PortalKnowledge& knowledge);

/// What a manager's request comes to.
enum class PortalRequest {
  none,
  question,      ///< nothing is decided
  verification,  ///< a consent that may have been taken back, where nobody could see it
};
[[nodiscard]] PortalRequest portalRequestFor(ConsentDecision recorded,
                                             const PortalKnowledge& knowledge);

}  // namespace lanternfold
