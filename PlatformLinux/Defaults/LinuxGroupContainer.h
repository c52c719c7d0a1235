// The production side of `GroupContainer`: folders below the user's data folder.
//
// Made by: the composition. Read by: whoever chooses where a storage keeps its file.
#pragma once

#include "Platform/GroupContainer.h"
#include "PlatformLinux/Defaults/DataDirectory.h"

namespace lanternfold {

/// `groups/GROUP-ID` and `metrics`.
class LinuxGroupContainer final : public GroupContainer {
 public:
  /// `directory` outlives the container.
  explicit LinuxGroupContainer(const DataDirectory& directory) : directory_(directory) {}

  [[nodiscard]] Folder folder(std::string_view groupId) override;
  [[nodiscard]] Folder metricsFolder() override;

 private:
  const DataDirectory& directory_;
};

}  // namespace lanternfold
