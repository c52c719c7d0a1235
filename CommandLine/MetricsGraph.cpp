#include "CommandLine/MetricsGraph.h"

#include <utility>

#include "CommandLine/SampleFailure.h"
#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"

namespace lanternfold {
namespace {

// Bytes per second.
constexpr std::uint64_t idleThreshold = 500'000;
constexpr std::uint64_t highSpeedThreshold = 6'250'000;
constexpr std::uint64_t veryHighSpeedThreshold = 31'250'000;

}  // namespace

std::filesystem::path metricsFile(const std::filesystem::path& folder, std::string_view ending) {
  std::string name = std::string("connection-metrics-storage_") + metricsStorageName;
  return folder / name.append(ending);
}

std::expected<std::filesystem::path, std::string> metricsFolder(
    const Machine& machine, const std::optional<std::string>& appGroupId) {
  GroupContainer& container = machine.platform.groupContainer;
  if (!appGroupId) return container.metricsFolder();
  auto ofGroup = container.folder(*appGroupId);
  if (ofGroup) return ofGroup;
  auto ofNone = container.metricsFolder();
  if (!ofNone) return ofGroup;
  machine.platform.diagnostics.line("Traffic is kept in " + ofNone->string() +
                                    ", where groups do not see it: " + ofGroup.error());
  return ofNone;
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
    const Machine& machine, std::shared_ptr<ConnectionMetricsStorage> storage,
    const std::filesystem::path& folder) {
  const Platform& platform = machine.platform;
  return ConnectionMetricsRecorder::make(
      std::move(storage), machine.metricsReader, DateUtils(platform.clock, platform.kernel),
      std::make_shared<StandardConnectionBandwidthAnalyzer>(idleThreshold, highSpeedThreshold,
                                                            veryHighSpeedThreshold),
      {.dispatch = platform.dispatch,
       .clock = platform.clock,
       .diagnostics = platform.diagnostics,
       .explain = [&files = platform.fileSystem, folder](const ConnectionMetricsError& error) {
         return sampleFailure(error, files, folder);
       }});
}

}  // namespace lanternfold
