#include "Wiring/DataFolders.h"

#include <system_error>

namespace lanternfold {
namespace {

std::filesystem::path installedShareFolder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return program.parent_path().parent_path() / "share";
}

/// `installed` when it is there, else `built`.
std::filesystem::path firstThatExists(const std::filesystem::path& installed,
                                      const std::filesystem::path& built) {
  std::error_code error;
  return std::filesystem::is_directory(installed, error) ? installed : built;
}

}  // namespace

std::filesystem::path assetsFolder() {
  return firstThatExists(installedShareFolder() / "lanternfold-widgets" / "Assets",
                         LANTERNFOLD_SOURCE_ASSETS);
}

std::filesystem::path translationsFolder() {
  return firstThatExists(installedShareFolder() / "locale", LANTERNFOLD_BUILT_TRANSLATIONS);
}

}  // namespace lanternfold
