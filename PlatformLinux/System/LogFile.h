// A file of messages, of bounded length.
//
// Made by: a program that runs without a terminal.
#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <system_error>

#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {

/// Everybody who has the descriptor appends to the file, other processes included: nothing stands
/// between a message of whatever library and the disk, also when the program crashes. Any thread,
/// one at a time.
class LogFile {
 public:
  /// Made with mode 0600 when it is not there. A link in its place is not followed, and what is no
  /// regular file is refused. The folder is there.
  [[nodiscard]] static std::expected<LogFile, std::error_code> open(
      const std::filesystem::path& file);

  /// Where messages are written to; closed in programs that are started.
  [[nodiscard]] int descriptor() const { return file_.get(); }

  /// Forgets what former programs have written.
  void beginAnew() const;

  /// Of a file longer than `bytes` the older half goes, from one message's beginning to another's.
  /// What is written in that moment may be lost. To be called again and again.
  void keepWithin(std::size_t bytes) const;

 private:
  explicit LogFile(FileDescriptor file) : file_(std::move(file)) {}

  FileDescriptor file_;
};

}  // namespace lanternfold
