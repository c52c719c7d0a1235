#include "PlatformLinux/Defaults/ConfigurationDirectory.h"

#include "PlatformLinux/Defaults/PrivateFolder.h"

namespace lanternfold {
namespace {

constexpr const char* chooser = "XDG_CONFIG_HOME";

ConfigurationDirectory::Folder usersConfigurationFolder() {
  if (const auto folder = usersFolder(chooser, ".config")) return *folder / productFolder;
  return std::unexpected(
      "this user has no home folder to keep the widgets' places in; set HOME or XDG_CONFIG_HOME");
}

}  // namespace

ConfigurationDirectory::ConfigurationDirectory() : location_(usersConfigurationFolder()) {}

ConfigurationDirectory::Folder ConfigurationDirectory::folder() const {
  if (!location_) return location_;
  if (const auto made = makePrivateFolder(*location_, chooser); !made) {
    return std::unexpected(made.error());
  }
  return location_;
}

}  // namespace lanternfold
