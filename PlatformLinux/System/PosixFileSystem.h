// The production side of `FileSystem`: the kernel's files.
//
// Made by: the composition. Read by: the storages of what is remembered.
#pragma once

#include "Platform/FileSystem.h"

namespace lanternfold {

/// Symbolic links are followed by every operation but `removeFile`, which removes the link: a file
/// that a user keeps elsewhere and links to stays there. `replaceFile` is that of
/// `replaceFileAtomically`.
class PosixFileSystem final : public FileSystem {
 public:
  [[nodiscard]] std::expected<FileAttributes, std::error_code> attributes(
      const std::filesystem::path& path) const override;
  [[nodiscard]] std::expected<FileContents, std::error_code> readFile(
      const std::filesystem::path& path, std::size_t maximumBytes) const override;
  [[nodiscard]] std::expected<FileAttributes, std::error_code> replaceFile(
      const std::filesystem::path& path, std::string_view bytes) override;
  [[nodiscard]] std::expected<void, std::error_code> createEmptyFile(
      const std::filesystem::path& path) override;
  [[nodiscard]] std::expected<void, std::error_code> overwriteFile(
      const std::filesystem::path& path, std::string_view bytes) override;
  [[nodiscard]] std::expected<std::filesystem::path, std::error_code> keepAside(
      const std::filesystem::path& path) override;
  [[nodiscard]] std::expected<void, std::error_code> removeFile(
      const std::filesystem::path& path) override;
};

}  // namespace lanternfold
