// The program `lanternfold-widgets` without its wiring: parses a command line and runs the command.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "CommandLine/Console.h"
#include "CommandLine/Machine.h"

namespace lanternfold {

/// Where the one-line diagnostics of background paths go: to standard output, unless that holds
/// JSON only.
enum class DiagnosticsTarget { standardOutput, standardError };

using MachineProvider = std::function<const Machine&(DiagnosticsTarget)>;

/// Runs the command that `arguments` (without the program's name) ask for. `machine` is called at
/// most once, when a command has been understood and needs it: `--help` works anywhere. Main
/// thread.
[[nodiscard]] ExitStatus runProgram(std::span<const std::string> arguments, const Console& console,
                                    const MachineProvider& machine);

}  // namespace lanternfold
