// The program `lanternfold-widgets` without its wiring: parses a command line and runs the command.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "CommandLine/CommandLineParser.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

using MachineProvider = std::function<const Machine&(const MachineOptions&)>;

/// Runs the command that `arguments` (without the program's name) ask for. `machine` is called at
/// most once, when everything on the command line has been understood: `--help` works anywhere.
/// Main thread.
[[nodiscard]] ExitStatus runProgram(std::span<const std::string> arguments, const Console& console,
                                    const MachineProvider& machine);

}  // namespace lanternfold
