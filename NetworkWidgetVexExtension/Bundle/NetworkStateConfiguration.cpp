#include "NetworkWidgetVexExtension/Bundle/NetworkStateConfiguration.h"

#include <memory>
#include <utility>

#include "NetworkWidgetVexExtension/Providers/NetworkStateProvider.h"
#include "NetworkWidgetVexExtension/Views/NetworkStateWidgetEntryView.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"

namespace lanternfold {

WidgetConfiguration networkStateConfiguration(std::string kind,
                                              std::optional<NetworkSourceCategory> categoryFilter,
                                              const WidgetSurroundings& surroundings) {
  const auto provider = std::make_shared<const NetworkStateProvider>(
      NetworkStateProvider::Options{.categoryFilter = categoryFilter, .skipGeoIp = false},
      std::make_shared<LocationAuthorizationObserver>(surroundings.locationConsent),
      NetworkStateProvider::Environment{.clock = surroundings.clock,
                                        .strings = surroundings.strings,
                                        .mainQueue = surroundings.mainQueue,
                                        .makeMonitor = surroundings.makeMonitor,
                                        .values = surroundings.environment});
  EnvironmentValues values = surroundings.environment;
  if (categoryFilter) values.set<ShownCategoriesEnvironmentKey>(*categoryFilter);
  WidgetContent<NetworkStateEntry> content;
  content.view = [values, &strings = surroundings.strings](const NetworkStateEntry& entry,
                                                           WidgetFamily family) {
    return NetworkStateWidgetEntryView{entry}.body(makeWidgetEnvironment(values, strings, family));
  };
  return intentConfiguration(std::move(kind), "ConfigurationIntent", provider, std::move(content));
}

}  // namespace lanternfold
