// The seam to the program's one-line diagnostics: what a background path that cannot report to a
// caller has to say.
//
// Production side: `StreamDiagnosticLog`. Fake: `RecordingDiagnosticLog`.
#pragma once

#include <string_view>

namespace lanternfold {

class DiagnosticLog {
 public:
  virtual ~DiagnosticLog() = default;

  /// Writes one line, without a line end of its own. Any thread; never fails.
  virtual void line(std::string_view text) = 0;
};

}  // namespace lanternfold
