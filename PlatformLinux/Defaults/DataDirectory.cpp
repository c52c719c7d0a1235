#include "PlatformLinux/Defaults/DataDirectory.h"

#include <cerrno>
#include <sys/stat.h>
#include <system_error>

#include "Platform/GroupContainer.h"
#include "PlatformLinux/Defaults/PrivateFolder.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

constexpr const char* chooser = "--data-dir";

DataDirectory::Folder usersDataFolder() {
  if (const auto folder = usersFolder("XDG_DATA_HOME", ".local/share")) {
    return *folder / productFolder;
  }
  return std::unexpected(
      "this user has no home folder to keep data in; set HOME or XDG_DATA_HOME, or choose a folder "
      "with --data-dir");
}

DataDirectory::Folder located(const std::optional<fs::path>& chosen) {
  if (!chosen) return usersDataFolder();
  std::error_code error;
  fs::path folder = fs::absolute(*chosen, error);
  if (error) return cannotMakeFolder(*chosen, error.value(), chooser);
  return folder;
}

}  // namespace

DataDirectory::DataDirectory(const std::optional<fs::path>& chosen) : location_(located(chosen)) {}

DataDirectory::Folder DataDirectory::folder() const { return folderBelow({}); }

std::expected<void, std::string> DataDirectory::checkIfThere() const {
  if (!location_) return std::unexpected(location_.error());
  struct stat status{};
  if (::stat(location_->c_str(), &status) != 0 && errno == ENOENT) return {};
  return checkPrivateFolder(*location_, chooser);
}

DataDirectory::Folder DataDirectory::defaultsFolder() const { return folderBelow("defaults"); }

DataDirectory::Folder DataDirectory::groupFolder(std::string_view groupId) const {
  if (!isGroupIdentifier(groupId)) fatalError("a folder was asked for by what names no group");
  return folderBelow(fs::path("groups") / groupId);
}

DataDirectory::Folder DataDirectory::metricsFolder() const { return folderBelow("metrics"); }

DataDirectory::Folder DataDirectory::folderBelow(const fs::path& names) const {
  if (!location_) return location_;
  fs::path folder = *location_;
  if (const auto made = makePrivateFolder(folder, chooser); !made)
    return std::unexpected(made.error());
  for (const fs::path& name : names) {
    folder /= name;
    if (const auto made = makePrivateFolder(folder, chooser); !made)
      return std::unexpected(made.error());
  }
  return folder;
}

}  // namespace lanternfold
