// Where the commands keep what outlives them: options that every command takes.
//
// Made by: the command line's parser. Read by: `main`, for the folder, and the commands, for the
// group.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

#include "NetworkWidgetVexExtension/Bundle/AppGroupIdEnvironmentKey.h"
#include "Wiring/Console.h"

namespace CLI {
class App;
}

namespace lanternfold {

/// As they stand on the command line, not yet checked.
struct DataOptions {
  std::optional<std::filesystem::path> dataFolder;
  std::optional<std::string> appGroupId;
  bool withoutAppGroup = false;

  /// The group whose folder to use; none when there is to be none.
  [[nodiscard]] std::optional<std::string> chosenAppGroupId() const;
};

/// `options` outlives the parsing.
void addDataOptions(CLI::App& command, DataOptions& options);

/// The failure names the option that is wrong and what may stand there.
[[nodiscard]] std::expected<void, CommandFailure> checkDataOptions(const DataOptions& options);

}  // namespace lanternfold
