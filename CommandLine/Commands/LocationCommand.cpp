#include "CommandLine/Commands/LocationCommand.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <utility>

#include <nlohmann/json.hpp>

#include "NetworkMonitor/Location/LocationAuthorizationObserver.h"
#include "Support/FileRemedy.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

using Status = LocationAuthorizationObserver::AuthorizationStatus;

struct NamedAction {
  std::string_view name;
  LocationAction action;
};

constexpr std::array<NamedAction, 5> namedActions = {{
    {"status", LocationAction::status},
    {"allow", LocationAction::allow},
    {"allow-in-use", LocationAction::allowInUse},
    {"deny", LocationAction::deny},
    {"reset", LocationAction::reset},
}};

std::string_view caseName(Status status) {
  switch (status) {
    case Status::notDetermined:
      return "notDetermined";
    case Status::restricted:
      return "restricted";
    case Status::denied:
      return "denied";
    case Status::authorizedAlways:
      return "authorizedAlways";
    case Status::authorizedWhenInUse:
      return "authorizedWhenInUse";
    case Status::unknown:
      break;
  }
  return "unknown";
}

struct Decision {
  ConsentDecision decision;
  const char* meaning;
};

Decision decisionOf(LocationAction action) {
  switch (action) {
    case LocationAction::allow:
      return {ConsentDecision::authorizedAlways, "Wi-Fi names are shown from now on.\n"};
    case LocationAction::allowInUse:
      return {ConsentDecision::authorizedWhenInUse,
              "Wi-Fi names are shown from now on while they are in use.\n"};
    case LocationAction::deny:
      return {ConsentDecision::denied, "Wi-Fi names are not shown from now on.\n"};
    case LocationAction::status:
    case LocationAction::reset:
      break;
  }
  return {ConsentDecision::notDetermined,
          "Nothing is decided any more; Wi-Fi names are not shown until it is.\n"};
}

CommandFailure failureOf(const ConsentRecordError& error, const ConsentRecord& record) {
  if (!error.sentence.empty()) return workFailed(error.sentence);
  return workFailed(cannotWrite(record.file(), error.error));
}

/// Waits for the answer of whoever decides, who gives one in any case. An interruption takes the
/// question back.
std::expected<void, CommandFailure> askAuthority(ConsentAuthority& authority,
                                                 const Machine& machine) {
  const auto answer = std::make_shared<std::optional<ConsentAuthority::Answer>>();
  authority.ask([answer, &loop = machine.mainLoop](const ConsentAuthority::Answer& given) {
    *answer = given;
    loop.stop();
  });
  machine.mainLoop.runUntilInterrupted();
  if (!*answer) {
    return std::unexpected(workFailed("the question was taken back before it was answered"));
  }
  if ((*answer)->outcome != PortalOutcome::granted) {
    return std::unexpected(workFailed(std::string(sentenceOf((*answer)->outcome))));
  }
  if ((*answer)->notRecorded) {
    return std::unexpected(failureOf(*(*answer)->notRecorded, machine.consentRecord));
  }
  return {};
}

/// What may be decided here is decided here: inside a sandbox that is to withhold names.
std::expected<LocationAction, CommandFailure> decide(LocationAction action,
                                                     const Machine& machine) {
  const bool allows = action == LocationAction::allow || action == LocationAction::allowInUse;
  if (allows && machine.consentAuthority != nullptr) {
    if (auto asked = askAuthority(*machine.consentAuthority, machine); !asked) {
      return std::unexpected(asked.error());
    }
    return LocationAction::allowInUse;
  }
  if (const auto recorded = machine.consentRecord.record(decisionOf(action).decision); !recorded) {
    return std::unexpected(failureOf(recorded.error(), machine.consentRecord));
  }
  return action;
}

void writeStatus(Status status, bool json, const Console& console) {
  if (!json) {
    console.output << caseName(status) << '\n';
    return;
  }
  const nlohmann::ordered_json object = {{"status", caseName(status)},
                                         {"rawValue", static_cast<std::int32_t>(status)}};
  console.output << object.dump() << '\n';
}

}  // namespace

std::expected<LocationOptions, CommandFailure> checkLocationOptions(std::string_view action,
                                                                    bool json) {
  const auto named = std::ranges::find(namedActions, action, &NamedAction::name);
  if (named == namedActions.end()) {
    return std::unexpected(badArguments("location takes " + std::string(locationActions) +
                                        ", not " + inQuotes(action)));
  }
  if (json && named->action != LocationAction::status) {
    return std::unexpected(badArguments(
        "--json belongs to \"location status\"; leave it out with " + inQuotes(action)));
  }
  return LocationOptions{.action = named->action, .json = json};
}

std::expected<void, CommandFailure> runLocation(const LocationOptions& options,
                                                const Machine& machine, const Console& console) {
  if (options.action == LocationAction::status) {
    writeStatus(LocationAuthorizationObserver::currentAuthStatus(machine.platform.locationConsent),
                options.json, console);
    return {};
  }
  const auto decided = decide(options.action, machine);
  if (!decided) return std::unexpected(decided.error());
  console.output << decisionOf(*decided).meaning << std::flush;
  if (console.output || console.isReaderGone()) return {};
  return std::unexpected(
      workFailed("the decision stands, but cannot be written to standard output; check that it is "
                 "open and that the disk is not full"));
}

}  // namespace lanternfold
