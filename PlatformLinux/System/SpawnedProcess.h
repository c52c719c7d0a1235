// A process that this one has started.
//
// Made by: `SocketChildProgramLauncher`. Known by a descriptor and not by its number, which the
// system gives to another one as soon as this one is reaped.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <system_error>

#include "Platform/ChildProgram.h"
#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {

/// Any thread, one at a time but for `kill`. Whoever holds it reaps it.
class SpawnedProcess {
 public:
  /// The descriptor by which the process has the socket that it is given.
  static constexpr int socketNumber = 3;

  /// Starts `program`, a path, with `arguments` behind its name. It has this process's environment,
  /// nothing to read from, `output` for standard output and standard error, or this process's own,
  /// `socket` under `socketNumber`, and no other descriptor; signals do to it what they do by
  /// default.
  [[nodiscard]] static std::expected<SpawnedProcess, std::error_code> start(
      const std::filesystem::path& program, std::span<const std::string> arguments, int socket,
      std::optional<int> output = std::nullopt);

  /// Becomes readable when the process has ended.
  [[nodiscard]] int descriptor() const { return descriptor_.get(); }

  /// Of no effect after its end.
  void kill() const;

  /// Waits for its end and forgets the process; once.
  [[nodiscard]] ChildEnd reap() const;

 private:
  explicit SpawnedProcess(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

  FileDescriptor descriptor_;
};

}  // namespace lanternfold
