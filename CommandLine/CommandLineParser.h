// From a command line to the command that it asks for, checked.
//
// Made by: `runProgram`. Nothing here touches the machine.
#pragma once

#include <expected>
#include <functional>
#include <span>
#include <string>
#include <variant>

#include "Wiring/ArgumentParsing.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"
#include "Wiring/MachineOptions.h"

namespace lanternfold {

/// A command whose options have been understood and checked, ready to run.
struct ChosenCommand {
  std::function<std::expected<void, CommandFailure>(const Machine&, const Console&)> run;
  MachineOptions machine;
};

using ParsedCommandLine = std::variant<ChosenCommand, InformationText, CommandFailure>;

/// `arguments` come without the program's name. A failure is always one of bad arguments and names
/// what was not understood.
[[nodiscard]] ParsedCommandLine parseCommandLine(std::span<const std::string> arguments);

}  // namespace lanternfold
