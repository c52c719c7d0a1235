// `lanternfold-widgets interfaces`: the machine's interfaces as a table or as JSON.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

struct InterfacesOptions {
  std::optional<std::string> prefix;   ///< only names of this family
  std::vector<std::string> excluding;  ///< names left out, matched exactly
  bool json = false;
};

/// The names of a list that is separated by commas.
[[nodiscard]] std::vector<std::string> parseExcludedNames(std::string_view names);

/// Writes the interfaces by name. An empty answer of a kernel that can be asked is a result; one of
/// a kernel that refuses is a failure.
[[nodiscard]] std::expected<void, CommandFailure> runInterfaces(const InterfacesOptions& options,
                                                                const Machine& machine,
                                                                const Console& console);

}  // namespace lanternfold
