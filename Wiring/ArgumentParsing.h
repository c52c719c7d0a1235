// A program's arguments, understood or not, in the program's own sentences.
//
// Called by: each program's parser, with what it has declared.
#pragma once

#include <span>
#include <string>
#include <variant>

#include "Wiring/Console.h"

namespace CLI {
class App;
}

namespace lanternfold {

/// Help or the version: a result of its own.
struct InformationText {
  std::string text;
};

/// Nothing when the arguments were understood, and the callbacks of `app` have run.
using ParsedArguments = std::variant<std::monostate, InformationText, CommandFailure>;

/// `arguments` come without the program's name. A failure is one of bad arguments and names what
/// was not understood.
[[nodiscard]] ParsedArguments parseArguments(CLI::App& app, std::span<const std::string> arguments);

}  // namespace lanternfold
