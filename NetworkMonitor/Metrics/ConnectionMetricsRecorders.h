// The recorders of one program, over each kind of storage.
//
// Made by: the composition, once. Read by: whoever needs a recorder; a program that shares one asks
// for it here instead of making its own.
#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "Platform/Clock.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/Dispatch.h"
#include "Platform/FileSystem.h"
#include "Platform/NetworkKernel.h"
#include "Platform/UserDefaults.h"

namespace lanternfold {

/// Each recorder reads the kernel's 32-bit counters and classifies traffic by the standard
/// thresholds. None of them may be given a storage that a reader of 64-bit counters fills: a stored
/// counter beyond 32 bits that is followed by a smaller one stops the program. Any thread.
class ConnectionMetricsRecorders {
 public:
  /// All outlive the recorders.
  struct Environment {
    const NetworkKernel& kernel;
    FileSystem& files;
    UserDefaultsSuites& userDefaults;
    Dispatch& dispatch;
    const Clock& clock;
    DiagnosticLog& diagnostics;
  };

  explicit ConnectionMetricsRecorders(const Environment& environment) : environment_(environment) {}

  /// The program's one recorder that remembers nothing beyond its end; made by the first call.
  [[nodiscard]] std::shared_ptr<ConnectionMetricsRecorder> inMemory();

  /// The program's one recorder over the standard user defaults; made by the first call.
  [[nodiscard]] std::shared_ptr<ConnectionMetricsRecorder> persistent();

  /// A new recorder over a suite, which is not null.
  [[nodiscard]] std::shared_ptr<ConnectionMetricsRecorder> persistent(
      std::shared_ptr<UserDefaults> userDefaults) const;

  /// A new recorder over the file of that name in the folder `baseUrl`.
  [[nodiscard]] std::shared_ptr<ConnectionMetricsRecorder> persistent(
      const std::filesystem::path& baseUrl, std::string_view name = "default") const;

 private:
  [[nodiscard]] std::shared_ptr<ConnectionMetricsRecorder> over(
      std::shared_ptr<ConnectionMetricsStorage> storage) const;

  const Environment environment_;
  std::mutex mutex_;
  std::shared_ptr<ConnectionMetricsRecorder> inMemory_;    // guarded by mutex_
  std::shared_ptr<ConnectionMetricsRecorder> persistent_;  // guarded by mutex_
};

}  // namespace lanternfold
