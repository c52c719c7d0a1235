// The seam to the files that outlive the program.
//
// Linux side: `PosixFileSystem`. Fake: `FakeFileSystem`, which fails at the step that a test names.
// Both pass the same contract tests.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace lanternfold {

/// What tells one state of a file from another: a replaced file has another number, even when both
/// were written within one tick of the file system's clock.
struct FileAttributes {
  std::chrono::system_clock::time_point
      modificationDate;  ///< as precise as the file system keeps it
  std::uint64_t sizeBytes = 0;
  std::uint64_t fileNumber = 0;  ///< unique among the files that exist on one file system
  friend bool operator==(const FileAttributes&, const FileAttributes&) = default;
};

struct FileContents {
  std::string bytes;
  FileAttributes attributes;  ///< of the very file that `bytes` were read from
  friend bool operator==(const FileContents&, const FileContents&) = default;
};

/// Files of one name that are kept aside at the most.
inline constexpr int mostKeptAside = 20;

/// Stateless from the outside; any thread, any number of processes at once. Calls block for the
/// disk. Errors are of the generic category (`std::errc`): no_such_file_or_directory,
/// permission_denied, is_a_directory, no_space_on_device, file_too_large, read_only_file_system and
/// whatever else the system says. A failed operation leaves what was there as it was, but for
/// `overwriteFile`, and for a `replaceFile` that failed at the very last, when the new file stands
/// but may not outlive a loss of power.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// The attributes of a regular file, of a folder or of whatever else stands at `path`.
  [[nodiscard]] virtual std::expected<FileAttributes, std::error_code> attributes(
      const std::filesystem::path& path) const = 0;

  /// The whole regular file; file_too_large when it is longer than `maximumBytes`, in which case it
  /// is not read; is_a_directory, and invalid_argument for a device, a pipe or a socket, which are
  /// never waited for.
  [[nodiscard]] virtual std::expected<FileContents, std::error_code> readFile(
      const std::filesystem::path& path, std::size_t maximumBytes) const = 0;

  /// Puts a file of `bytes` (mode 0600) in the place of `path`: whoever reads sees the old file or
  /// the new one, whole, also after a loss of power. Nothing else is left behind. The attributes
  /// are those of the new file. What is no regular file stays, with the errors of `readFile`.
  [[nodiscard]] virtual std::expected<FileAttributes, std::error_code> replaceFile(
      const std::filesystem::path& path, std::string_view bytes) = 0;

  /// Makes an empty file (mode 0600), emptying one that is there.
  [[nodiscard]] virtual std::expected<void, std::error_code> createEmptyFile(
      const std::filesystem::path& path) = 0;

  /// Opens a file that exists, cuts it to nothing, writes `bytes` and waits until they are on the
  /// disk. A reader may see any part of it meanwhile, and a failure may leave any part of it.
  [[nodiscard]] virtual std::expected<void, std::error_code> overwriteFile(
      const std::filesystem::path& path, std::string_view bytes) = 0;

  /// Gives the regular file at `path` a second name beside the first, so that it outlives a
  /// replacement: "NAME.damaged-1" or the next one that is free, up to `mostKeptAside`; file_exists
  /// when none is. A file that has such a name keeps that one. The name, whole. Where a file cannot
  /// have two names it is moved. What is no regular file stays, with the errors of `readFile`.
  [[nodiscard]] virtual std::expected<std::filesystem::path, std::error_code> keepAside(
      const std::filesystem::path& path) = 0;

  /// no_such_file_or_directory when nothing is there.
  [[nodiscard]] virtual std::expected<void, std::error_code> removeFile(
      const std::filesystem::path& path) = 0;
};

}  // namespace lanternfold
