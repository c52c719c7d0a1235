#include "Wiring/ArgumentParsing.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "Wiring/ArgumentFaults.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

/// Refusals of the library that `firstArgumentFault` does not foresee.
CommandFailure notUnderstood(const CLI::App& app) {
  return badArguments("the arguments were not understood; \"" + app.get_name() +
                      " --help\" lists what there is");
}

/// A text that begins like the short option for help, which the library takes for it ("-host").
std::optional<CommandFailure> fakeHelp(const CLI::App& app,
                                       std::span<const std::string> arguments) {
  for (const std::string& word : arguments) {
    if (word == "--") break;
    if (word.size() <= 2 || !word.starts_with("-h")) continue;
    return badArguments("unknown option " + inQuotes(word) +
                        "; put -- before a text that begins with a hyphen; \"" + app.get_name() +
                        " --help\" lists what there is");
  }
  return std::nullopt;
}

}  // namespace

ParsedArguments parseArguments(CLI::App& app, std::span<const std::string> arguments) {
  bool isUnderstood = true;
  try {
    std::vector<std::string> words = withEmptyValuesApart(arguments);
    // The library takes them from the back.
    std::ranges::reverse(words);
    app.parse(std::move(words));
  } catch (const CLI::Success& information) {
    if (auto failure = fakeHelp(app, arguments)) return *std::move(failure);
    std::ostringstream text;
    (void)app.exit(information, text, text);
    return InformationText{text.str()};
  } catch (const CLI::Error&) {
    isUnderstood = false;
  }
  if (auto fault = firstArgumentFault(app, arguments)) return badArguments(*std::move(fault));
  if (!isUnderstood) return notUnderstood(app);
  return std::monostate{};
}

}  // namespace lanternfold
