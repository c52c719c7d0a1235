#include "CommandLine/MetricsGraph.h"

#include <utility>
#include <variant>

#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"

namespace lanternfold {
namespace {

// Bytes per second.
constexpr std::uint64_t idleThreshold = 500'000;
constexpr std::uint64_t highSpeedThreshold = 6'250'000;
constexpr std::uint64_t veryHighSpeedThreshold = 31'250'000;

}  // namespace

std::optional<std::filesystem::path> metricsFolder(const Machine& machine,
                                                   const std::optional<std::string>& appGroupId) {
  GroupContainer& container = machine.platform.groupContainer;
  auto folder = appGroupId ? container.folder(*appGroupId) : std::nullopt;
  return folder ? folder : container.metricsFolder();
}

std::shared_ptr<FileConnectionMetricsStorage> makeMetricsStorage(
    const Machine& machine, const std::filesystem::path& folder) {
  const Platform& platform = machine.platform;
  return std::make_shared<FileConnectionMetricsStorage>(
      FileConnectionMetricsStorage::Environment{.files = platform.fileSystem,
                                                .clock = platform.clock,
                                                .dispatch = platform.dispatch,
                                                .log = platform.diagnostics},
      folder, metricsStorageName);
}

std::shared_ptr<ConnectionMetricsRecorder> makeMetricsRecorder(
    const Machine& machine, std::shared_ptr<ConnectionMetricsStorage> storage) {
  const Platform& platform = machine.platform;
  return ConnectionMetricsRecorder::make(
      std::move(storage), machine.metricsReader, DateUtils(platform.clock, platform.kernel),
      std::make_shared<StandardConnectionBandwidthAnalyzer>(idleThreshold, highSpeedThreshold,
                                                            veryHighSpeedThreshold),
      {.dispatch = platform.dispatch,
       .clock = platform.clock,
       .diagnostics = platform.diagnostics});
}

std::string sampleFailure(const ConnectionMetricsError& error,
                          const std::filesystem::path& folder) {
  const auto* lock = std::get_if<LockError>(&error);
  if (lock == nullptr || lock->value != LockError::Case::lockTimeout) return describe(error);
  const std::string name = std::string("connection-metrics-storage_") + metricsStorageName;
  return describe(error) + "; try again, and if that does not help remove " +
         (folder / (name + ".lock")).string();
}

}  // namespace lanternfold
