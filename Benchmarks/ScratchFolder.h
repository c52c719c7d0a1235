// A fresh folder on a disk, gone at the end.
//
// Made by: the benchmarks that write files.
#pragma once

#include <filesystem>
#include <string>

namespace lanternfold {

/// Below the build folder, which is to stand on a disk: stops the program when that is a file
/// system in memory, where nothing would be waited for.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// The kind of file system, such as "ext4".
  [[nodiscard]] const std::string& fileSystem() const { return fileSystem_; }

 private:
  std::filesystem::path path_;
  std::string fileSystem_;
};

}  // namespace lanternfold
