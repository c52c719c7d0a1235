#include "CommandLine/MonitorGraph.h"

#include <utility>

#include "CommandLine/InternetGraph.h"
#include "CommandLine/MetricsGraph.h"
#include "CommandLine/RememberingMetricsReader.h"
#include "CommandLine/SampleFailure.h"
#include "CommandLine/WalkStartingMetricsReader.h"
#include "CommandLine/WalkingInterfaceResolver.h"
#include "NetBase/NetUtils.h"
#include "NetworkMonitor/Interfaces/PosixInterfaceResolver.h"
#include "NetworkMonitor/Metrics/RecordedConnectionMetricsReader.h"
#include "NetworkMonitor/Wlan/CoreWlanInterfaceResolver.h"

namespace lanternfold {

namespace {

std::shared_ptr<PosixInterfaceResolver> makeResolver(
    const Platform& platform, std::shared_ptr<ConnectionMetricsReader> metricsReader) {
  return std::make_shared<PosixInterfaceResolver>(
      std::move(metricsReader),
      NetUtils(SNUtils(platform.kernel, platform.resolverConfiguration, platform.interfaceNaming,
                       platform.diagnostics)),
      platform.networkConfiguration, platform.strings);
}

/// The clause about the folder when there is none to record into.
std::expected<RememberingMetricsReader::Recorded, std::string> makeRecordedReader(
    const Machine& machine, const std::optional<std::string>& appGroupId) {
  const auto folder = metricsFolder(machine, appGroupId);
  if (!folder) return std::unexpected(folder.error());
  auto reader = std::make_shared<RecordedConnectionMetricsReader>(
      makeMetricsRecorder(machine, makeMetricsStorage(machine, *folder), *folder));
  reader->setRecorderAutostartEnabled(false);
  return RememberingMetricsReader::Recorded{
      .reader = std::move(reader),
      .explain = [&files = machine.platform.fileSystem, folder = *folder](const auto& error) {
        return sampleFailure(error, files, folder);
      }};
}

std::shared_ptr<RememberingMetricsReader> makeRememberingReader(
    const Machine& machine, const std::optional<std::string>& appGroupId) {
  return std::make_shared<RememberingMetricsReader>(
      makeRecordedReader(machine, appGroupId), machine.metricsReader,
      RememberingMetricsReader::Environment{.clock = machine.platform.clock,
                                            .diagnostics = machine.platform.diagnostics});
}

}  // namespace

std::shared_ptr<InterfaceResolver> makeInterfaceResolver(const Machine& machine) {
  return makeResolver(machine.platform, machine.metricsReader);
}

std::shared_ptr<NetworkStateMonitor> makeNetworkStateMonitor(const Machine& machine,
                                                             const MonitorOptions& options) {
  const Platform& platform = machine.platform;
  const auto reader = makeRememberingReader(machine, options.appGroupId);
  const auto interfaces =
      std::make_shared<WalkingInterfaceResolver>(makeResolver(platform, reader), reader);
  return std::make_shared<NetworkStateMonitor>(
      makeInternetInfoResolver(
          machine, options,
          {.interfaceResolver = interfaces,
           .metricsReader = std::make_shared<WalkStartingMetricsReader>(reader)}),
      interfaces,
      std::make_shared<CoreWlanInterfaceResolver>(
          interfaces, CoreWlanInterfaceResolver::Environment{.wifiClient = platform.wifiClient,
                                                             .strings = platform.strings}),
      nullptr,
      NetworkStateMonitor::Environment{.pathMonitors = platform.pathMonitors,
                                       .mainQueue = platform.dispatch.mainQueue(),
                                       .strings = platform.strings});
}

ResolvedState resolveOnce(const Machine& machine, const MonitorOptions& options,
                          NetworkSourceCategory categories) {
  constexpr std::chrono::seconds limit{30};
  ResolvedState resolved{.state = NetworkState::initial(machine.platform.strings)};
  bool running = false;
  const auto monitor = makeNetworkStateMonitor(machine, options);
  monitor->setActiveCategories(categories);
  monitor->setStateUpdateHandler([&](const NetworkState& state, bool complete, std::error_code) {
    if (resolved.complete) return;
    resolved = {.state = state, .complete = complete};
    if (complete && running) machine.mainLoop.stop();
  });
  monitor->refresh();
  running = true;
  if (!resolved.complete) machine.mainLoop.runFor(limit);
  // What still answers later must not reach into this function.
  monitor->setStateUpdateHandler(nullptr);
  return resolved;
}

}  // namespace lanternfold
