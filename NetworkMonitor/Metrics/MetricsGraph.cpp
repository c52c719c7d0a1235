#include "NetworkMonitor/Metrics/MetricsGraph.h"

#include <utility>

#include "NetworkMonitor/Metrics/MetricsFiles.h"
#include "NetworkMonitor/Metrics/SampleFailure.h"
#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"

namespace lanternfold {
namespace {

// Bytes per second.
constexpr std::uint64_t idleThreshold = 500'000;
constexpr std::uint64_t highSpeedThreshold = 6'250'000;
constexpr std::uint64_t veryHighSpeedThreshold = 31'250'000;

}  // namespace

std::expected<std::filesystem::path, std::string> metricsFolder(
    const Platform& platform, const std::optional<std::string>& appGroupId) {
  GroupContainer& container = platform.groupContainer;
  if (!appGroupId) return container.metricsFolder();
  auto ofGroup = container.folder(*appGroupId);
  if (ofGroup) return ofGroup;
  auto ofNone = container.metricsFolder();
  if (!ofNone) return ofGroup;
  platform.diagnostics.line("Traffic is kept in " + ofNone->string() +
                            ", where groups do not see it: " + ofGroup.error());
  return ofNone;
}

std::shared_ptr<FileConnectionMetricsStorage> makeMetricsStorage(
    const Platform& platform, const std::filesystem::path& folder) {
  return std::make_shared<FileConnectionMetricsStorage>(
      FileConnectionMetricsStorage::Environment{.files = platform.fileSystem,
                                                .clock = platform.clock,
                                                .dispatch = platform.dispatch,
                                                .log = platform.diagnostics},
      folder, metricsStorageName);
}

std::shared_ptr<ConnectionMetricsRecorder> makeMetricsRecorder(
    const Platform& platform, std::shared_ptr<ConnectionMetricsReader> reader,
    std::shared_ptr<ConnectionMetricsStorage> storage, const std::filesystem::path& folder) {
  return ConnectionMetricsRecorder::make(
      std::move(storage), std::move(reader), DateUtils(platform.clock, platform.kernel),
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
