#include "NetworkMonitor/Monitor/ProductionGraph.h"

#include <expected>
#include <utility>
#include <vector>

#include "NetBase/NetUtils.h"
#include "NetworkMonitor/Interfaces/PosixInterfaceResolver.h"
#include "NetworkMonitor/Interfaces/WalkingInterfaceResolver.h"
#include "NetworkMonitor/Metrics/MetricsFiles.h"
#include "NetworkMonitor/Metrics/MetricsGraph.h"
#include "NetworkMonitor/Metrics/RecordedConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/SampleFailure.h"
#include "NetworkMonitor/Metrics/WalkStartingMetricsReader.h"
#include "NetworkMonitor/PublicInfo/ActiveInterfacePublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/CachedPublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/GroupUserDefaults.h"
#include "NetworkMonitor/PublicInfo/IpApiPublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/LatestInternetInfoResolver.h"
#include "NetworkMonitor/PublicInfo/QuernapleIp6Resolver.h"
#include "NetworkMonitor/PublicInfo/QuernapleIpResolver.h"
#include "NetworkMonitor/PublicInfo/ServiceFaults.h"
#include "NetworkMonitor/PublicInfo/StandardInternetInfoResolver.h"
#include "NetworkMonitor/Wlan/CoreWlanInterfaceResolver.h"

namespace lanternfold {
namespace {

using enum PublicInfoKey;

NetUtils makeNetUtils(const Platform& platform) {
  return NetUtils(SNUtils(platform.kernel, platform.resolverConfiguration, platform.interfaceNaming,
                          platform.diagnostics));
}

/// What takes a sample into the file of `folder` at every read; the clause about the folder when
/// there is none.
std::expected<RememberingMetricsReader::Recorded, std::string> recordedReader(
    const ProductionSurroundings& surroundings,
    const std::expected<std::filesystem::path, std::string>& folder) {
  if (!folder) return std::unexpected(folder.error());
  const Platform& platform = surroundings.platform;
  const auto storage = makeMetricsStorage(platform, *folder);
  const auto recorder = makeMetricsRecorder(platform, surroundings.metricsReader, storage, *folder);
  auto reader = std::make_shared<RecordedConnectionMetricsReader>(recorder);
  reader->setRecorderAutostartEnabled(false);
  return RememberingMetricsReader::Recorded{
      .reader = std::move(reader),
      .explain = [&files = platform.fileSystem, folder = *folder](
                     const auto& error) { return sampleFailure(error, files, folder); },
      .lock = std::make_shared<const FileLock>(
          FileLock::Environment{
              .files = platform.fileSystem, .clock = platform.clock, .dispatch = platform.dispatch},
          metricsFile(*folder, ".lock"))};
}

std::shared_ptr<RememberingMetricsReader> countersOf(
    const ProductionSurroundings& surroundings,
    const std::expected<std::filesystem::path, std::string>& folder) {
  return std::make_shared<RememberingMetricsReader>(
      recordedReader(surroundings, folder), surroundings.metricsReader,
      RememberingMetricsReader::Environment{.clock = surroundings.platform.clock,
                                            .diagnostics = surroundings.platform.diagnostics,
                                            .whileLocked = surroundings.whileLocked,
                                            .heldLocks = surroundings.heldLocks});
}

}  // namespace

std::shared_ptr<InterfaceResolver> makePosixInterfaceResolver(
    const Platform& platform, std::shared_ptr<ConnectionMetricsReader> metricsReader) {
  return std::make_shared<PosixInterfaceResolver>(std::move(metricsReader), makeNetUtils(platform),
                                                  platform.networkConfiguration, platform.strings);
}

std::shared_ptr<NetworkStateMonitor> makeNetworkStateMonitor(
    const std::optional<std::string>& appGroupId, bool skipGeoIP,
    const ProductionSurroundings& surroundings) {
  const Platform& platform = surroundings.platform;
  UrlSessions& sessions = platform.urlSessions;
  const ServiceUrls& urls = surroundings.serviceUrls;
  DispatchQueue& mainQueue = platform.dispatch.mainQueue();

  // The settings of the group, else the standard ones.
  const auto userDefaults =
      std::make_shared<GroupUserDefaults>(platform.userDefaults, appGroupId, platform.diagnostics);

  // The counters, sampled into the file in the group's container.
  const auto counters = countersOf(surroundings, metricsFolder(platform, appGroupId));

  // The public side: who answers for what.
  const auto faults = std::make_shared<ServiceFaults>(platform.diagnostics);
  const auto ipv4Echo =
      notingFaults(std::make_shared<QuernapleIpResolver>(sessions, surroundings.bundle, urls),
                   "IPv4 echo", faults);
  std::vector<PublicInfoResolverConfiguration> publicInfo;
  if (skipGeoIP) {
    publicInfo.push_back({.resolver = ipv4Echo, .keys = {ip}});
  } else {
    auto geolocation =
        notingFaults(std::make_shared<IpApiPublicInfoResolver>(sessions, surroundings.bundle, urls),
                     "geolocation", faults);
    publicInfo.push_back({.resolver = std::make_shared<CachedPublicInfoResolver>(
                              ipv4Echo, std::move(geolocation), userDefaults, platform.clock),
                          .keys = {isp, country, ip}});
  }
  publicInfo.push_back({.resolver = notingFaults(std::make_shared<QuernapleIp6Resolver>(
                                                     sessions, surroundings.bundle, urls),
                                                 "IPv6 echo", faults),
                        .keys = {ip6, supportsIp6}});
  // Only the name and the type are asked of these interfaces, which takes no sample.
  auto activeInterface = std::make_shared<ActiveInterfacePublicInfoResolver>(
      makePosixInterfaceResolver(platform, surroundings.metricsReader),
      ActiveInterfacePublicInfoResolver::Environment{.pathMonitors = platform.pathMonitors,
                                                     .mainQueue = mainQueue});
  publicInfo.push_back(
      {.resolver = notingFaults(std::move(activeInterface), "active interface", faults),
       .keys = {interface}});
  auto internet = std::make_shared<StandardInternetInfoResolver>(
      std::move(publicInfo), std::make_shared<WalkStartingMetricsReader>(counters),
      StandardInternetInfoResolver::Environment{.mainQueue = mainQueue,
                                                .naming = platform.interfaceNaming,
                                                .netUtils = makeNetUtils(platform)});
  auto internetInfoResolver =
      tellingFaults(std::make_shared<LatestInternetInfoResolver>(std::move(internet)), faults);

  auto interfaceResolver = std::make_shared<WalkingInterfaceResolver>(
      makePosixInterfaceResolver(platform, counters), counters);

  auto wlanInterfaceResolver = std::make_shared<CoreWlanInterfaceResolver>(
      std::make_shared<WalkingInterfaceResolver>(makePosixInterfaceResolver(platform, counters),
                                                 counters),
      CoreWlanInterfaceResolver::Environment{.wifiClient = platform.wifiClient,
                                             .strings = platform.strings});

  return std::make_shared<NetworkStateMonitor>(
      std::move(internetInfoResolver), std::move(interfaceResolver),
      std::move(wlanInterfaceResolver), /*cellularProvidersResolver=*/nullptr,
      NetworkStateMonitor::Environment{.pathMonitors = platform.pathMonitors,
                                       .mainQueue = mainQueue,
                                       .strings = platform.strings});
}

}  // namespace lanternfold
