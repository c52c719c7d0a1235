// What a program that records is made of, with everything that it keeps in a folder of its own.
//
// Made by: the benchmarks of the sampling step.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "Benchmarks/GrowingCounters.h"
#include "Benchmarks/ScratchFolder.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"
#include "NetworkMonitor/Metrics/UserDefaultsConnectionMetricsStorage.h"
#include "PlatformLinux/Defaults/SqliteUserDefaults.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/LinuxNetworkKernel.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "PlatformLinux/System/SystemClock.h"
#include "Support/FatalError.h"

namespace lanternfold {

class RecordingProgram {
 public:
  using Storage = std::shared_ptr<ConnectionMetricsStorage>;

  [[nodiscard]] const std::string& fileSystem() const { return folder_.fileSystem(); }
  [[nodiscard]] PosixFileSystem& files() { return files_; }
  [[nodiscard]] std::filesystem::path file(const std::string& name) const {
    return folder_.path() / name;
  }

  [[nodiscard]] Storage memoryStorage() {
    return std::make_shared<InMemoryConnectionMetricsStorage>(clock_);
  }
  [[nodiscard]] std::shared_ptr<FileConnectionMetricsStorage> fileStorage(const std::string& name) {
    return std::make_shared<FileConnectionMetricsStorage>(
        FileConnectionMetricsStorage::Environment{
            .files = files_, .clock = clock_, .dispatch = dispatch_, .log = log_},
        folder_.path(), name);
  }
  [[nodiscard]] std::shared_ptr<UserDefaults> suite() {
    return std::make_shared<SqliteUserDefaults>(directory_, "benchmark", log_);
  }
  [[nodiscard]] Storage defaultsStorage(std::shared_ptr<UserDefaults> suite) {
    return std::make_shared<UserDefaultsConnectionMetricsStorage>(
        UserDefaultsConnectionMetricsStorage::Environment{.clock = clock_, .log = log_},
        std::move(suite));
  }
  [[nodiscard]] FileLock lock() {
    return {{.files = files_, .clock = clock_, .dispatch = dispatch_}, file("alone.lock")};
  }

  [[nodiscard]] std::shared_ptr<ConnectionMetricsRecorder> recorder(Storage storage,
                                                                    std::size_t interfaceCount) {
    return ConnectionMetricsRecorder::make(
        std::move(storage), std::make_shared<GrowingCounters>(interfaceCount),
        DateUtils(clock_, kernel_), std::make_shared<StandardConnectionBandwidthAnalyzer>(),
        {.dispatch = dispatch_, .clock = clock_, .diagnostics = log_});
  }

  /// Runs `work` as a step is run: on the recorder queue, while the caller waits.
  void onRecorderQueue(std::move_only_function<void()> work) {
    dispatch_.serialQueue(ConnectionMetricsRecorder::queueLabel, QualityOfService::background)
        .sync(std::move(work));
  }

 private:
  /// A line is a step that went wrong.
  class NoLinesLog final : public DiagnosticLog {
   public:
    void line(std::string_view text) override { fatalError(text); }
  };

  ScratchFolder folder_;
  SystemClock clock_;
  PosixFileSystem files_;
  LinuxNetworkKernel kernel_;
  NoLinesLog log_;
  DataDirectory directory_{folder_.path()};
  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
};

}  // namespace lanternfold
