#include "PlatformLinux/Defaults/LinuxGroupContainer.h"

namespace lanternfold {

std::optional<std::filesystem::path> LinuxGroupContainer::folder(std::string_view groupId) {
  if (!isGroupIdentifier(groupId)) return std::nullopt;
  return said(directory_.groupFolder(groupId));
}

std::optional<std::filesystem::path> LinuxGroupContainer::metricsFolder() {
  return said(directory_.metricsFolder());
}

std::optional<std::filesystem::path> LinuxGroupContainer::said(
    const DataDirectory::Folder& folder) {
  if (folder) return *folder;
  const std::lock_guard lock(mutex_);
  if (told_.insert(folder.error()).second) log_.line(folder.error());
  return std::nullopt;
}

}  // namespace lanternfold
