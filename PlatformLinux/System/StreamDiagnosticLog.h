// The production side of `DiagnosticLog`: lines on standard output or standard error.
//
// Made by: the composition, which chooses the stream. Read by: the user, or the journal.
#pragma once

#include <cstdio>
#include <functional>
#include <mutex>

#include "Platform/DiagnosticLog.h"

namespace lanternfold {

/// A line is written whole and at once, whatever other threads write to the stream. A stream that
/// takes nothing (a closed pipe) loses the line.
class StreamDiagnosticLog final : public DiagnosticLog {
 public:
  /// What a line does while nobody reads the pipe that the stream is, and it is full.
  enum class WhenFull {
    wait,
    loseLine,  ///< and a line that is longer than such a pipe takes in one piece loses its end
  };

  /// `stream` (`stdout`, `stderr`) outlives the log.
  explicit StreamDiagnosticLog(std::FILE* stream, WhenFull whenFull = WhenFull::wait)
      : stream_(stream), whenFull_(whenFull) {}

  /// Line ends inside `text` become spaces: one call is one line. Other control characters are
  /// written as "\xNN": a folder's name may hold an escape sequence.
  void line(std::string_view text) override;

  /// Called after each line from now on, by one thread at a time; it must not add any.
  void setAfterLine(std::function<void()> afterLine);

 private:
  std::FILE* stream_;
  WhenFull whenFull_;
  std::mutex mutex_;  ///< held from the look at the stream until the line is written
  std::function<void()> afterLine_ = [] {};
};

}  // namespace lanternfold
