#include "Wiring/DataOptions.h"

#include <CLI/CLI.hpp>

#include "Platform/GroupContainer.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {

std::optional<std::string> DataOptions::chosenAppGroupId() const {
  if (withoutAppGroup) return std::nullopt;
  return appGroupId.value_or(defaultAppGroupId);
}

void addDataOptions(CLI::App& command, DataOptions& options) {
  const char* group = "Where recorded traffic is kept";
  command
      .add_option("--data-dir", options.dataFolder,
                  "The folder of everything that is kept; default "
                  "$XDG_DATA_HOME/net.quernaple.LanternfoldX")
      ->option_text("DIR")
      ->type_name("a folder's name")
      ->group(group);
  command
      .add_option(
          "--app-group", options.appGroupId,
          std::string("The application group whose folder to use; default ") + defaultAppGroupId)
      ->option_text("ID")
      ->type_name("an application group's name")
      ->group(group);
  command
      .add_flag("--no-app-group", options.withoutAppGroup,
                "Use the folder of what belongs to no group")
      ->group(group);
}

std::expected<void, CommandFailure> checkDataOptions(const DataOptions& options) {
  if (options.dataFolder && options.dataFolder->empty()) {
    return std::unexpected(badArguments("--data-dir needs a folder's name, not \"\""));
  }
  if (options.appGroupId && options.withoutAppGroup) {
    return std::unexpected(
        badArguments("--app-group and --no-app-group exclude each other; give one of them"));
  }
  if (options.appGroupId && !isGroupIdentifier(*options.appGroupId)) {
    return std::unexpected(
        badArguments(inQuotes(*options.appGroupId) +
                     " cannot name an application group; use letters, digits, points, hyphens "
                     "and underscores, 128 at the most, and neither a point nor a hyphen first"));
  }
  return {};
}

}  // namespace lanternfold
