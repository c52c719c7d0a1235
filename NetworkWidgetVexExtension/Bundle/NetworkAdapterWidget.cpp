#include "NetworkWidgetVexExtension/Bundle/NetworkAdapterWidget.h"

#include <memory>
#include <optional>
#include <utility>

#include "NetworkWidgetVexExtension/Providers/BestRouteFinder.h"
#include "NetworkWidgetVexExtension/Providers/NetworkAdapterProvider.h"
#include "NetworkWidgetVexExtension/Views/AdapterChoice.h"
#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "WidgetService/WidgetConfiguration.h"

namespace lanternfold {
namespace {

using ViewMaker = EntryViewMaker<NetworkAdapterEntry>;

ViewMaker viewMaker(const EnvironmentValues& values, const StringTable& strings) {
  return [values, &strings](const NetworkAdapterEntry& entry, WidgetFamily family) {
    return NetworkAdapterWidgetEntryView{entry}.body(
        makeWidgetEnvironment(values, strings, family));
  };
}

/// An automatic choice asks which adapter carries the best default route at the time of the
/// timeline; an adapter that the user chose is shown whatever carries it.
WidgetContent<NetworkAdapterEntry> content(const WidgetSurroundings& surroundings) {
  WidgetContent<NetworkAdapterEntry> content;
  content.view = viewMaker(surroundings.environment, surroundings.strings);
  const auto finder =
      std::make_shared<BestRouteFinder>(surroundings.pathMonitors, surroundings.mainQueue);
  content.prepareTimeline = [finder, values = surroundings.environment,
                             &strings = surroundings.strings](
                                const ConfigurationParameters& parameters, auto completion) {
    if (chosenAdapterName(AdapterConfigurationIntent::from(parameters))) {
      completion(viewMaker(values, strings));
      return;
    }
    finder->find([values, &strings, completion = std::move(completion)](
                     const std::optional<std::string>& best) mutable {
      if (best) values.set<PreferredInterfaceNamesEnvironmentKey>({*best});
      completion(viewMaker(values, strings));
    });
  };
  return content;
}

}  // namespace

Widget NetworkAdapterWidget::body(const WidgetSurroundings& surroundings) const {
  return intentConfiguration(
             kind, "AdapterConfigurationIntent",
             std::make_shared<const NetworkAdapterProvider>(
                 surroundings.clock, surroundings.strings, surroundings.makeMonitor),
             content(surroundings))
      .configurationDisplayName(surroundings.mainBundleStrings.localized("Network Adapter"))
      .description(surroundings.mainBundleStrings.localized("Network adapter widget."))
      .supportedFamilies(families());
}

}  // namespace lanternfold
