// From the command line of the host to what it is to be, checked.
//
// Made by: `runHostProgram`. Nothing here touches the machine or a display.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "Wiring/ArgumentParsing.h"
#include "Wiring/CommonOptions.h"
#include "Wiring/Console.h"
#include "Wiring/RefreshInterval.h"

namespace lanternfold {

struct HostChoice {
  /// Checked, and handed on to the extension as they were given.
  CommonOptions common;
  std::optional<std::filesystem::path> dataFolder;
  std::chrono::seconds refreshInterval = defaultRefreshInterval;
  /// The end of a pipe, at whose other end somebody waits for the widgets to be shown.
  std::optional<int> startedDescriptor;
};

using ParsedHostCommandLine = std::variant<HostChoice, InformationText, CommandFailure>;

/// `arguments` come without the program's name.
[[nodiscard]] ParsedHostCommandLine parseHostCommandLine(std::span<const std::string> arguments);

}  // namespace lanternfold
