// The command lines of `show` and of `ctl` with the commands below it: the widgets on the desktop.
#pragma once

#include "CommandLine/CommandChoice.h"

namespace CLI {
class App;
}

namespace lanternfold {

/// `choice` outlives the parsing.
void addShow(CLI::App& app, CommandChoice& choice);
void addCtl(CLI::App& app, CommandChoice& choice);

}  // namespace lanternfold
