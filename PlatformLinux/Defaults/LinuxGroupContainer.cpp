#include "PlatformLinux/Defaults/LinuxGroupContainer.h"

namespace lanternfold {

GroupContainer::Folder LinuxGroupContainer::folder(std::string_view groupId) {
  if (!isGroupIdentifier(groupId)) {
    return std::unexpected("the text that was to name an application group cannot name one");
  }
  return directory_.groupFolder(groupId);
}

GroupContainer::Folder LinuxGroupContainer::metricsFolder() { return directory_.metricsFolder(); }

}  // namespace lanternfold
