// The folders of application groups, on a fake file system.
#pragma once

#include "Platform/GroupContainer.h"
#include "Tests/Support/FakeFileSystem.h"

namespace lanternfold {

class FakeGroupContainer final : public GroupContainer {
 public:
  /// `disk` outlives the container; the folders stand below `root`.
  explicit FakeGroupContainer(FakeFileSystem& disk, std::filesystem::path root = "/containers")
      : disk_(disk), root_(std::move(root)) {}

  /// No folder can be made, as on a disk that may only be read.
  void setRefusing(bool refusing) { isRefusing_ = refusing; }
  /// Only the folder of what belongs to no group can be made.
  void setRefusingGroups(bool refusing) { isRefusingGroups_ = refusing; }

  [[nodiscard]] Folder folder(std::string_view groupId) override {
    if (!isGroupIdentifier(groupId)) return std::unexpected("the text names no group");
    return made(root_ / "groups" / groupId, isRefusing_ || isRefusingGroups_);
  }
  [[nodiscard]] Folder metricsFolder() override { return made(root_ / "metrics", isRefusing_); }

 private:
  Folder made(const std::filesystem::path& folder, bool isRefused) {
    if (isRefused) {
      return std::unexpected("cannot make the folder \"" + folder.string() +
                             "\": Read-only file system; choose another one");
    }
    disk_.makeFolder(folder);
    return folder;
  }

  FakeFileSystem& disk_;
  const std::filesystem::path root_;
  bool isRefusing_ = false;
  bool isRefusingGroups_ = false;
};

}  // namespace lanternfold
