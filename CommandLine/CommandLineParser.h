// From a command line to the command that it asks for, checked.
//
// Made by: `runProgram`. Nothing here touches the machine.
#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "CommandLine/Console.h"
#include "CommandLine/Machine.h"

namespace lanternfold {

/// Where the one-line diagnostics of background paths go: to standard output, unless that holds
/// JSON only.
enum class DiagnosticsTarget { standardOutput, standardError };

/// What the command line says of the machine that a command is to run on.
struct MachineOptions {
  DiagnosticsTarget diagnostics = DiagnosticsTarget::standardOutput;
  /// Where everything is kept; the user's own data folder when it is not given.
  std::optional<std::filesystem::path> dataFolder;
  /// Certificates in PEM to trust; the system's when it is not given.
  std::optional<std::filesystem::path> certificateAuthoritiesFile;
};

/// A command whose options have been understood and checked, ready to run.
struct ChosenCommand {
  std::function<std::expected<void, CommandFailure>(const Machine&, const Console&)> run;
  MachineOptions machine;
};

/// Help or the version: a result of its own.
struct InformationText {
  std::string text;
};

using ParsedCommandLine = std::variant<ChosenCommand, InformationText, CommandFailure>;

/// `arguments` come without the program's name. A failure is always one of bad arguments and names
/// what was not understood.
[[nodiscard]] ParsedCommandLine parseCommandLine(std::span<const std::string> arguments);

}  // namespace lanternfold
