#include "PlatformLinux/Location/PortalRules.h"

#include <algorithm>
#include <array>

namespace lanternfold {
namespace {

enum Status : std::int32_t { notDetermined = 0, restricted = 1, denied = 2, whenInUse = 4 };

struct NamedError {
  std::string_view name;
  PortalOutcome outcome;
};

constexpr std::array<NamedError, 12> namedErrors = {{
    {"org.freedesktop.portal.Error.NotAllowed", PortalOutcome::disabled},
    {"org.freedesktop.portal.Error.Cancelled", PortalOutcome::ended},
    {"org.freedesktop.DBus.Error.AccessDenied", PortalOutcome::missing},
    {"org.freedesktop.DBus.Error.ServiceUnknown", PortalOutcome::missing},
    {"org.freedesktop.DBus.Error.NameHasNoOwner", PortalOutcome::missing},
    {"org.freedesktop.DBus.Error.UnknownObject", PortalOutcome::missing},
    {"org.freedesktop.DBus.Error.UnknownInterface", PortalOutcome::missing},
    {"org.freedesktop.DBus.Error.UnknownMethod", PortalOutcome::missing},
    {"org.freedesktop.DBus.Error.Disconnected", PortalOutcome::vanished},
    {"org.freedesktop.DBus.Error.Timeout", PortalOutcome::silent},
    {"org.freedesktop.DBus.Error.TimedOut", PortalOutcome::silent},
    {"org.freedesktop.DBus.Error.InvalidSignature", PortalOutcome::garbled},
}};

/// The accuracies that the portal stores for a yes; "NONE" is a no.
constexpr std::array<std::string_view, 5> accuracies = {"COUNTRY", "CITY", "NEIGHBORHOOD", "STREET",
                                                        "EXACT"};

}  // namespace

bool isDecision(PortalOutcome outcome) {
  return outcome == PortalOutcome::granted || outcome == PortalOutcome::refused;
}

bool isOutOfReach(PortalOutcome outcome) {
  return outcome == PortalOutcome::noBus || outcome == PortalOutcome::missing ||
         outcome == PortalOutcome::disabled;
}

std::string_view sentenceOf(PortalOutcome outcome) {
  switch (outcome) {
    case PortalOutcome::granted:
    case PortalOutcome::offered:
      break;
    case PortalOutcome::refused:
      return "the location portal refused, as you did now or before; allow this application to "
             "know the location in the system's settings and try again";
    case PortalOutcome::ended:
      return "the location portal ended the question without a decision; see that a location "
             "service is there and try again";
    case PortalOutcome::noBus:
      return "the session bus cannot be reached, so that the location portal cannot be asked; "
             "start the program in a desktop session";
    case PortalOutcome::missing:
      return "this session has no location portal that could be asked; install a desktop portal "
             "with its access dialog";
    case PortalOutcome::disabled:
      return "this system has location switched off; switch it on in the system's settings";
    case PortalOutcome::silent:
      return "the location portal does not answer; try again";
    case PortalOutcome::vanished:
      return "the location portal went away before it answered; try again";
    case PortalOutcome::garbled:
      return "the location portal gave an answer that cannot be understood; see that the desktop "
             "portal is up to date";
    case PortalOutcome::failed:
      return "the location portal failed; see what it says in the journal";
  }
  return "the location portal can be asked";
}

PortalOutcome outcomeOfResponse(std::uint32_t response) {
  if (response == 0) return PortalOutcome::granted;
  return response == 1 ? PortalOutcome::refused : PortalOutcome::ended;
}

PortalOutcome outcomeOfError(std::string_view errorName) {
  // The bus answers so both for one who is slow and for one who has died.
  if (errorName == "org.freedesktop.DBus.Error.NoReply") return PortalOutcome::silent;
  if (errorName.starts_with("org.freedesktop.DBus.Error.Spawn.")) return PortalOutcome::missing;
  const auto named = std::ranges::find(namedErrors, errorName, &NamedError::name);
  return named == namedErrors.end() ? PortalOutcome::failed : named->outcome;
}

std::string portalPath(std::string_view kind, std::string_view uniqueName, std::string_view token) {
  std::string sender(uniqueName.substr(uniqueName.starts_with(':') ? 1 : 0));
  std::ranges::replace(sender, '.', '_');
  return "/org/freedesktop/portal/desktop/" + std::string(kind) + '/' + sender + '/' +
         std::string(token);
}

StoredPermission storedPermissionOf(const PermissionTable& table,
                                    const std::string& applicationId) {
  const auto entry = table.find(applicationId);
  if (applicationId.empty() || entry == table.end() || entry->second.size() < 2) {
    return StoredPermission::absent;
  }
  const std::string& accuracy = entry->second.front();
  if (accuracy == "NONE") return StoredPermission::refused;
  return std::ranges::find(accuracies, accuracy) != accuracies.end() ? StoredPermission::granted
                                                                     : StoredPermission::absent;
}

StoredPermission storedPermissionAfterError(std::string_view errorName, StoredPermission known) {
  if (errorName == "org.freedesktop.portal.Error.NotFound") return StoredPermission::absent;
  if (known != StoredPermission::unobservable) return known;
  return outcomeOfError(errorName) == PortalOutcome::missing ? StoredPermission::unobservable
                                                             : StoredPermission::absent;
}

std::int32_t sandboxedStatus(ConsentDecision recorded, const PortalKnowledge& knowledge) {
  if (recorded == ConsentDecision::denied) return denied;
  if (knowledge.portal != PortalOutcome::offered) return restricted;
  if (knowledge.stored == StoredPermission::refused) return denied;
  if (recorded == ConsentDecision::notDetermined) return notDetermined;
  return knowledge.stored == StoredPermission::absent ? notDetermined : whenInUse;
}

PortalRequest portalRequestFor(ConsentDecision recorded, const PortalKnowledge& knowledge) {
  switch (sandboxedStatus(recorded, knowledge)) {
    case notDetermined:
      return PortalRequest::question;
    case whenInUse:
      return knowledge.stored == StoredPermission::unobservable ? PortalRequest::verification
                                                                : PortalRequest::none;
    default:
      return PortalRequest::none;
  }
}

}  // namespace lanternfold
