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

namespace lanternfold {

inline constexpr const char* hostProgramName = "lanternfold-widget-host";

struct HostChoice {
  /// Checked, and handed on to the extension as they were given.
  CommonOptions common;
  std::optional<std::filesystem::path> dataFolder;
  /// Between a timeline's end and the next question for one: 10 seconds to a day.
  std::chrono::seconds refreshInterval = std::chrono::minutes(5);
};

using ParsedHostCommandLine = std::variant<HostChoice, InformationText, CommandFailure>;

/// `arguments` come without the program's name.
[[nodiscard]] ParsedHostCommandLine parseHostCommandLine(std::span<const std::string> arguments);

}  // namespace lanternfold
