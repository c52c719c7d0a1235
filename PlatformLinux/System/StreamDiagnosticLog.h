// The production side of `DiagnosticLog`: lines on standard output or standard error.
//
// Made by: the composition, which chooses the stream. Read by: the user, or the journal.
#pragma once

#include <cstdio>

#include "Platform/DiagnosticLog.h"

namespace lanternfold {

/// A line is written whole and at once, whatever other threads write to the stream. A stream that
/// takes nothing (a closed pipe) loses the line.
class StreamDiagnosticLog final : public DiagnosticLog {
 public:
  /// `stream` (`stdout`, `stderr`) outlives the log.
  explicit StreamDiagnosticLog(std::FILE* stream) : stream_(stream) {}

  /// Line ends inside `text` become spaces: one call is one line. Other control characters are
  /// written as "\xNN": a folder's name may hold an escape sequence.
  void line(std::string_view text) override;

 private:
  std::FILE* stream_;
};

}  // namespace lanternfold
