// From the command line of the extension to what it is to be, checked.
//
// Made by: `runExtensionProgram`. Nothing here touches the machine.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "Wiring/ArgumentParsing.h"
#include "Wiring/Console.h"
#include "Wiring/MonitorGraph.h"

namespace lanternfold {

struct ExtensionChoice {
  int serviceDescriptor = -1;  ///< an open stream socket, as its host says
  MonitorOptions monitor;
  std::optional<std::filesystem::path> dataFolder;
  std::optional<std::filesystem::path> certificateAuthoritiesFile;
};

using ParsedExtensionCommandLine = std::variant<ExtensionChoice, InformationText, CommandFailure>;

/// `arguments` come without the program's name.
[[nodiscard]] ParsedExtensionCommandLine parseExtensionCommandLine(
    std::span<const std::string> arguments);

}  // namespace lanternfold
