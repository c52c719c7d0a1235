// Whether this host is the only one of its user's session.
//
// Called by: `runHostProgram`, before any window is made.
#pragma once

#include <expected>
#include <gtkmm/application.h>
#include <optional>

#include "PlatformLinux/Defaults/ConfigurationDirectory.h"
#include "PlatformLinux/System/FileClaim.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// What keeps another host out, as long as it lasts.
struct SoleHostClaim {
  /// Of a session without a bus: a lock in the folder of the user's configuration.
  std::optional<FileClaim> lock;
};

/// Takes the application's name on the bus; without a bus it claims the folder. None when another
/// host has been there first: with a bus it has been told to show its widgets.
[[nodiscard]] std::expected<std::optional<SoleHostClaim>, CommandFailure> claimSoleHost(
    Gtk::Application& application, const ConfigurationDirectory& configuration);

}  // namespace lanternfold
