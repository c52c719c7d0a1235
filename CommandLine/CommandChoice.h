// What the parsing of one command leaves behind.
//
// Used by: the parts of the command line's parser.
#pragma once

#include <expected>
#include <functional>

#include "CommandLine/CommandLineParser.h"
#include "Wiring/CommonOptions.h"

namespace lanternfold {

using CommandRun =
    std::function<std::expected<void, CommandFailure>(const Machine&, const Console&)>;

/// The command that was given, or why it cannot be run.
using CommandChoice = std::expected<ChosenCommand, CommandFailure>;

/// One that runs `run` on a machine as `common` wants it. With `json` standard output is for the
/// JSON alone, and texts in it are English.
[[nodiscard]] ChosenCommand chosenCommand(const CommonChoice& common, bool json, CommandRun run);

}  // namespace lanternfold
