// `lanternfold-widgets location`: the user's consent to show Wi-Fi names, shown and decided.
#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

/// What `location` takes.
inline constexpr const char* locationActions = "status, allow, allow-in-use, deny or reset";

enum class LocationAction { status, allow, allowInUse, deny, reset };

struct LocationOptions {
  LocationAction action = LocationAction::status;
  bool json = false;  ///< of `status` alone
};

/// The failure names what was not understood and what may stand there.
[[nodiscard]] std::expected<LocationOptions, CommandFailure> checkLocationOptions(
    std::string_view action, bool json);

/// `status` writes the status by its name; the others record a decision, of which every running
/// program of the user hears at once, and say in one line what it means. Inside a sandbox both ways
/// to allow ask the system and wait for the user's answer, which is for use only; anything but a
/// consent is a failure.
[[nodiscard]] std::expected<void, CommandFailure> runLocation(const LocationOptions& options,
                                                              const Machine& machine,
                                                              const Console& console);

}  // namespace lanternfold
