#include "Wiring/WidgetGraph.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "NetworkWidgetVexExtension/Bundle/AppGroupIdEnvironmentKey.h"
#include "NetworkWidgetVexExtension/Bundle/NetworkWidgetBundle.h"
#include "NetworkWidgetVexExtension/Intents/RefreshAppIntent.h"

namespace lanternfold {

std::vector<Widget> makeWidgets(const Machine& machine, const MonitorOptions& options) {
  const Platform& platform = machine.platform;
  EnvironmentValues environment;
  environment.set<AppGroupIdEnvironmentKey>(options.appGroupId);
  const ProductionSurroundings surroundings{.platform = platform,
                                            .metricsReader = machine.metricsReader,
                                            .serviceUrls = options.serviceUrls,
                                            .bundle = widgetExtensionBundle(),
                                            .whileLocked = WhileLocked::failure,
                                            .heldLocks = std::make_shared<HeldLockMemory>()};
  NetworkWidgetBundle bundle(
      {.clock = platform.clock,
       .strings = platform.strings,
       .mainBundleStrings = machine.mainBundleStrings,
       .mainQueue = platform.dispatch.mainQueue(),
       .pathMonitors = platform.pathMonitors,
       .locationConsent = platform.locationConsent,
       .makeMonitor =
           [surroundings, skipsGeoIP = options.skipGeoIP](
               const std::optional<std::string>& appGroupId, bool skipGeoIP) {
             return makeNetworkStateMonitor(appGroupId, skipGeoIP || skipsGeoIP, surroundings);
           },
       .environment = std::move(environment)});
  return bundle.body();
}

WidgetResponder makeWidgetResponder(const Machine& machine, std::vector<Widget> widgets) {
  return {std::move(widgets), {std::make_shared<RefreshAppIntent>(machine.platform.strings)}};
}

}  // namespace lanternfold
