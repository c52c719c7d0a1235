// A log of diagnostics that says everything once.
//
// Made by: `LinuxMachine`, for a command that asks several widgets, all of which meet the same
// faults.
#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "Platform/DiagnosticLog.h"

namespace lanternfold {

class DistinctDiagnosticLog final : public DiagnosticLog {
 public:
  /// As many lines are remembered; what comes later is written as often as it comes.
  static constexpr std::size_t mostRemembered = 1000;

  /// `log` gets the lines, and outlives this one.
  explicit DistinctDiagnosticLog(DiagnosticLog& log) : log_(log) {}

  /// Any thread.
  void line(std::string_view text) override;

 private:
  /// Whether it is, and remembers it.
  [[nodiscard]] bool isNew(std::string_view text);

  DiagnosticLog& log_;
  std::mutex mutex_;
  std::set<std::string, std::less<>> written_;  ///< guarded by `mutex_`
};

}  // namespace lanternfold
