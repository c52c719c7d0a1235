// What is wrong with a command line, in this program's own sentences.
//
// Made by: the command line's parser, whose library refuses in words of its own, and takes some
// command lines otherwise than they were meant.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace lanternfold {

/// The first fault that shows without a look at the values: an unknown command or option, a value
/// that is missing or too much, an option given twice, an argument too many, one that is missing.
/// None when there is none. The commands and the options are those that `app` declares; the type
/// name of an option is the clause of what it takes.
[[nodiscard]] std::optional<std::string> firstArgumentFault(const CLI::App& app,
                                                            std::span<const std::string> arguments);

/// The arguments with "--option=" as two words, the second one empty: the library would take the
/// next argument for the value.
[[nodiscard]] std::vector<std::string> withEmptyValuesApart(std::span<const std::string> arguments);

}  // namespace lanternfold
