// The claim to be the only one, as a lock of the kernel on a file.
//
// Used by: whoever must not run twice over the same folder.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <sys/types.h>
#include <system_error>

#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {

/// Lasts until its destruction, and no longer than the process however that ends. The file stays
/// behind: it is the lock that counts.
class FileClaim {
 public:
  /// None when another holder has it, in this process or in another one. Never waits; the error is
  /// that of opening or locking the file. A link in the file's place is not followed.
  [[nodiscard]] static std::expected<std::optional<FileClaim>, std::error_code> claim(
      const std::filesystem::path& file);

  /// Writes into the file which process this is, for whoever finds it claimed. A disk that does not
  /// take it changes nothing about the claim.
  void signWithProcess() const;
  /// Which process has signed the claim on `file`; none when it has not, or cannot be read. True
  /// only as long as somebody has the claim.
  [[nodiscard]] static std::optional<pid_t> signature(const std::filesystem::path& file);

 private:
  explicit FileClaim(FileDescriptor file) : file_(std::move(file)) {}

  FileDescriptor file_;
};

}  // namespace lanternfold
