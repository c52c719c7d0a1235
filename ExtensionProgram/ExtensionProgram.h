// The program `lanternfold-widget-extension`: the extension's widgets, served over the socket that
// its host has started it with.
//
// Called by: `main`.
#pragma once

#include <span>
#include <string>

#include "Wiring/Console.h"

namespace lanternfold {

/// Serves until its host is gone, has asked nothing for half a minute, or the system asks it to end
/// (SIGTERM, SIGINT). `arguments` come without the program's name. Main thread.
[[nodiscard]] ExitStatus runExtensionProgram(std::span<const std::string> arguments,
                                             const Console& console);

}  // namespace lanternfold
