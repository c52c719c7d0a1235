// What every writer and reader of files repeats: whole writes, interrupted calls, errors as codes.
//
// Read by: `PosixFileSystem`, `AtomicReplacement`, `DefaultsFile`, and the command line's own
// files.
#pragma once

#include <cerrno>
#include <expected>
#include <string_view>
#include <sys/stat.h>
#include <system_error>

#include "Platform/FileSystem.h"

namespace lanternfold {

[[nodiscard]] inline std::error_code codeOf(int error) { return {error, std::generic_category()}; }

/// Of the call that failed last.
[[nodiscard]] inline std::unexpected<std::error_code> lastError() {
  return std::unexpected(codeOf(errno));
}

/// Repeats a call that a signal interrupted.
template <typename Call>
[[nodiscard]] auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// Whether all of `bytes` were written; errno says why not.
[[nodiscard]] bool writeAll(int descriptor, std::string_view bytes);

/// Whether the file's bytes are on the disk; errno says why not.
[[nodiscard]] bool synchronizeFile(int descriptor);

[[nodiscard]] FileAttributes attributesOf(const struct stat& status);

/// Of the file type in `status`: none for a regular file, else the code that an operation on
/// regular files answers.
[[nodiscard]] std::error_code errorOfKind(const struct stat& status);

}  // namespace lanternfold
