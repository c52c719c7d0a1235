#include "Wiring/ArgumentParsing.h"

#include <algorithm>
#include <sstream>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "Wiring/ArgumentFaults.h"

namespace lanternfold {
namespace {

/// Refusals of the library that `firstArgumentFault` does not foresee.
CommandFailure notUnderstood(const CLI::App& app) {
  return badArguments("the arguments were not understood; \"" + app.get_name() +
                      " --help\" lists what there is");
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
