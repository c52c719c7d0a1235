// What a program prints that this one has started, as lines of a log.
//
// Made by: `SocketChildProgramLauncher`, one for each program that it starts.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include <asio/posix/stream_descriptor.hpp>

#include "Platform/DiagnosticLog.h"
#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {

class EventLoop;

/// Lives until nobody can print any more, or the loop goes. What it says beyond `mostBytes` is
/// taken all the same, so that it is not held up, and is lost but for a line that says so.
class ProgramOutput : public std::enable_shared_from_this<ProgramOutput> {
 public:
  static constexpr std::size_t mostBytes = std::size_t{64} * 1024;

  /// `reading` is the end of a pipe that is read from. `loop` and `log` outlive this; the log is
  /// told on the loop's thread.
  ProgramOutput(FileDescriptor reading, EventLoop& loop, DiagnosticLog& log);
  ~ProgramOutput();
  ProgramOutput(const ProgramOutput&) = delete;
  ProgramOutput& operator=(const ProgramOutput&) = delete;

  /// Once, before `start`. The error is the system's, which watches a limited number. Any thread.
  [[nodiscard]] std::error_code watch();
  /// Once. Any thread.
  void start();

 private:
  // On the event loop.
  void read();
  void take(std::string_view bytes);
  void finishLine();

  const FileDescriptor reading_;
  EventLoop& loop_;
  DiagnosticLog& log_;
  asio::posix::stream_descriptor pipe_;  ///< that of `reading_`, which owns it
  std::array<char, 4096> piece_{};
  std::string line_;  ///< so far
  std::size_t taken_ = 0;
};

}  // namespace lanternfold
