// Counters remembered in a file, which the programs of one user share under a lock.
//
// Made by: the composition, of a folder and a name. Read by: the recorder, which locks it for each
// sampling step. Registrations gather in memory until `save`.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/FileLock.h"
#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "Platform/DiagnosticLog.h"

namespace lanternfold {

/// A read first loads the file again when another program has saved it. What cannot be loaded is
/// reported in one line and leaves what was in memory.
class FileConnectionMetricsStorage final : public ConnectionMetricsPersistentStorage,
                                           public ConnectionMetricsLockingStorage {
 public:
  /// All outlive the storage.
  struct Environment {
    FileSystem& files;
    const Clock& clock;
    Dispatch& dispatch;
    DiagnosticLog& log;
  };

  /// The files stand in `baseUrl`, which need not be there as long as nothing is saved. Loads the
  /// data file if there is one.
  FileConnectionMetricsStorage(Environment environment, const std::filesystem::path& baseUrl,
                               std::string_view name);

  [[nodiscard]] const std::filesystem::path& storageUrl() const { return storageUrl_; }
  [[nodiscard]] const std::string& name() const { return name_; }

  /// The data file's modification date, which moves when any program saves.
  [[nodiscard]] std::optional<Date> lastRegisterDate() const override;
  void registerMetrics(const ConnectionMetrics& metrics, std::string_view interfaceName,
                       ConnectionMetricsType type) override;
  [[nodiscard]] std::optional<ConnectionMetrics> metrics(std::string_view interfaceName,
                                                         ConnectionMetricsType type) override;
  /// One look at the file's attributes, which take longer to get than everything else of an
  /// interface in a sampling step.
  [[nodiscard]] Remembered remembered(std::string_view interfaceName) override;
  [[nodiscard]] ConnectionMetricsMap allMetrics(ConnectionMetricsType type) override;
  /// Leaves the file as it is, and does not load that one again: reads find nothing until something
  /// is registered or another program saves.
  void reset() override;
  /// A file that could not be loaded is kept aside before it is replaced, which is reported.
  [[nodiscard]] std::expected<void, MetricsSaveError> save() override;

  /// What another program saved is loaded before the return, so that a save does not undo it.
  [[nodiscard]] std::expected<void, LockError> lock() override;
  [[nodiscard]] std::expected<void, LockError> unlock() override { return lock_.unlock(); }

 private:
  using Attributes = std::expected<FileAttributes, std::error_code>;

  [[nodiscard]] Attributes attributes() const { return environment_.files.attributes(storageUrl_); }
  void reload();
  void reloadIfNewer(const Attributes& attributes);
  [[nodiscard]] bool isNewer(const Attributes& attributes) const;
  void reportFailedRestore(const std::string& reason);
  [[nodiscard]] std::expected<void, MetricsSaveError> keepWhatWasNotRestored();

  Environment environment_;
  std::filesystem::path storageUrl_;
  std::string name_;
  FileLock lock_;
  InMemoryConnectionMetricsStorage innerStorage_;
  /// Of the file that was loaded, saved or given up last, also one that could not be decoded: it is
  /// looked into once. None while there was no such file.
  std::optional<FileAttributes> seen_;
  /// Why the file could not be read when that was tried last, which is reported once; empty when it
  /// could. Unlike a faulty text this may pass while the file stays the same, so it is tried again.
  std::string readFault_;
  bool hasFailedToRestore_ = false;          ///< the file that stands there now
  std::optional<FileAttributes> keptAside_;  ///< of the file that was kept aside last
};

}  // namespace lanternfold
