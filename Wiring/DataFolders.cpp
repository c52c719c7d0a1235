#include "Wiring/DataFolders.h"

#include <system_error>

namespace lanternfold {
namespace {

std::filesystem::path installedShareFolder() { return programFolder().parent_path() / "share"; }

/// `installed` when it is there, else `built`.
std::filesystem::path firstThatExists(const std::filesystem::path& installed,
                                      const std::filesystem::path& built) {
  std::error_code error;
  return std::filesystem::is_directory(installed, error) ? installed : built;
}

}  // namespace

std::filesystem::path programFolder() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

std::filesystem::path assetsFolder() {
  return firstThatExists(installedShareFolder() / "lanternfold-widgets" / "Assets",
                         LANTERNFOLD_SOURCE_ASSETS);
}

std::filesystem::path translationsFolder() {
  return firstThatExists(installedShareFolder() / "locale", LANTERNFOLD_BUILT_TRANSLATIONS);
}

}  // namespace lanternfold
