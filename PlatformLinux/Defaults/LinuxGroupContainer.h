// The production side of `GroupContainer`: folders below the user's data folder.
//
// Made by: the composition. Read by: whoever chooses where a storage keeps its file.
#pragma once

#include <mutex>
#include <set>
#include <string>

#include "Platform/DiagnosticLog.h"
#include "Platform/GroupContainer.h"
#include "PlatformLinux/Defaults/DataDirectory.h"

namespace lanternfold {

/// `groups/GROUP-ID` and `metrics`. Why there is no folder is said once in the diagnostic log.
class LinuxGroupContainer final : public GroupContainer {
 public:
  /// Both outlive the container.
  LinuxGroupContainer(const DataDirectory& directory, DiagnosticLog& log)
      : directory_(directory), log_(log) {}

  [[nodiscard]] std::optional<std::filesystem::path> folder(std::string_view groupId) override;
  [[nodiscard]] std::optional<std::filesystem::path> metricsFolder() override;

 private:
  std::optional<std::filesystem::path> said(const DataDirectory::Folder& folder);

  const DataDirectory& directory_;
  DiagnosticLog& log_;
  std::mutex mutex_;
  std::set<std::string> told_;  ///< guarded by `mutex_`
};

}  // namespace lanternfold
