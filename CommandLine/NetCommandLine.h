// The command line of `net` and of the commands below it.
#pragma once

#include "CommandLine/CommandChoice.h"

namespace CLI {
class App;
}

namespace lanternfold {

/// `choice` outlives the parsing.
void addNet(CLI::App& app, CommandChoice& choice);

}  // namespace lanternfold
