// The options that every command takes.
//
// Made by: the command line's parser, one for each command. Read by: `main`, for the machine, and
// the commands, for the monitor.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Wiring/Console.h"
#include "Wiring/DataOptions.h"
#include "Wiring/MonitorGraph.h"
#include "Wiring/ServiceOptions.h"

namespace lanternfold {

/// As they stand on the command line, not yet checked.
struct CommonOptions {
  DataOptions data;
  ServiceOptions services;
};

/// `options` outlives the parsing.
void addCommonOptions(CLI::App& command, CommonOptions& options);

/// What was chosen with them.
struct CommonChoice {
  MonitorOptions monitor;
  std::optional<std::filesystem::path> dataFolder;
  std::optional<std::filesystem::path> certificateAuthoritiesFile;
};

/// The failure names the option that is wrong and what may stand there.
[[nodiscard]] std::expected<CommonChoice, CommandFailure> checkCommonOptions(
    const CommonOptions& options);

/// The options that were given, as a program takes them that is started with the same ones. A name
/// of a file or a folder is absolute in them, so that the program may stand elsewhere.
[[nodiscard]] std::vector<std::string> argumentsOf(const CommonOptions& options);

}  // namespace lanternfold
