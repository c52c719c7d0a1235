// The program `lanternfold-widget-host`: the widgets on the desktop.
//
// Called by: `main`.
#pragma once

#include <span>
#include <string>

#include "Wiring/Console.h"

namespace lanternfold {

/// Shows the widgets until the user or the system asks it to end (SIGTERM, SIGINT, SIGHUP). When
/// they are shown already it says so, brings them to the front, and ends. `arguments` come without
/// the program's name. Main thread.
[[nodiscard]] ExitStatus runHostProgram(std::span<const std::string> arguments,
                                        const Console& console);

}  // namespace lanternfold
