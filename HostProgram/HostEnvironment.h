// What the host reads of its environment.
//
// Called by: the host's composition, before any thread is started.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "HostProgram/Display/DisplayChoice.h"

namespace lanternfold {

/// The displays that this process is told of.
[[nodiscard]] DisplayEnvironment displayEnvironmentOfProcess();

/// The login manager's name of the session that this process was started in; empty where it is told
/// of none.
[[nodiscard]] std::string loginSessionOfProcess();

/// GTK_THEME, the theme that the toolkit uses instead of the one that the desktop's settings name;
/// none when there is no such wish.
[[nodiscard]] std::optional<std::string> forcedThemeOfProcess();

/// A variable as it was given to this program; none when it was not set.
struct GivenVariable {
  std::string name;
  std::optional<std::string> value;
};

/// Those that the host sets for itself, its libraries and its extension, as long as it has not done
/// so: what else it starts is to have them as they were.
[[nodiscard]] std::vector<GivenVariable> givenVariablesOfProcess();

}  // namespace lanternfold
