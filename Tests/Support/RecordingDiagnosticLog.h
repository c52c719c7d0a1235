// A diagnostic log that keeps its lines for a test to compare.
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/DiagnosticLog.h"

namespace lanternfold {

class RecordingDiagnosticLog final : public DiagnosticLog {
 public:
  void line(std::string_view text) override {
    const std::lock_guard lock(mutex_);
    lines_.emplace_back(text);
  }

  /// Every line so far, in the order of the calls.
  [[nodiscard]] std::vector<std::string> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace lanternfold
