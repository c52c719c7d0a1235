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

  [[nodiscard]] std::optional<std::filesystem::path> folder(std::string_view groupId) override {
    if (!isGroupIdentifier(groupId)) return std::nullopt;
    return made(root_ / "groups" / groupId);
  }
  [[nodiscard]] std::optional<std::filesystem::path> metricsFolder() override {
    return made(root_ / "metrics");
  }

 private:
  std::optional<std::filesystem::path> made(const std::filesystem::path& folder) {
    if (isRefusing_) return std::nullopt;
    disk_.makeFolder(folder);
    return folder;
  }

  FakeFileSystem& disk_;
  const std::filesystem::path root_;
  bool isRefusing_ = false;
};

}  // namespace lanternfold
