// Whether this host is the only one of its user.
//
// Called by: `runHostProgram`, before any window is made.
#pragma once

#include <expected>
#include <giomm/application.h>
#include <optional>
#include <string>

#include "HostProgram/HostServices.h"
#include "HostProgram/SessionBus.h"
#include "PlatformLinux/System/FileClaim.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// What keeps another host out, as long as it lasts.
struct SoleHostClaim {
  /// In the folder of the user's configuration, which two sessions of one user share. None where
  /// it cannot be made: widgets that are shown twice are better than none.
  std::optional<FileClaim> lock;
};

/// Claims the folder, and then takes the application's name on `bus`. None when
/// another host of the same bus has been there first: it has been told to open `link`, or without
/// one to show its widgets. A host on another bus, or on none, cannot be told anything: that it has
/// the folder is a failure, after six seconds in which one that is just ending may be done. So is
/// one of the same bus that does not answer, after the bus's own limit for answers.
[[nodiscard]] std::expected<std::optional<SoleHostClaim>, CommandFailure> claimSoleHost(
    Gio::Application& application, SessionBus& bus, const HostServices& services,
    const std::optional<std::string>& link);

}  // namespace lanternfold
