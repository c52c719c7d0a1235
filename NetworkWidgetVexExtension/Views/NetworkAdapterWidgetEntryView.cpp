#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"

#include <utility>
#include <variant>
#include <vector>

#include "NetworkWidgetVexExtension/Views/AdapterChoice.h"
#include "NetworkWidgetVexExtension/Views/BackgroundView.h"
#include "NetworkWidgetVexExtension/Views/MissingAdapterView.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceGridView.h"
#include "NetworkWidgetVexExtension/Views/RefreshButton.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

View card(const AdapterChoice& choice, const WidgetEnvironment& environment) {
  if (const auto* missing = std::get_if<MissingAdapter>(&choice)) {
    return MissingAdapterView{missing->name}.body(environment);
  }
  NetworkSourceGridView grid;
  if (const auto* interface = std::get_if<BasicInterface>(&choice)) {
    grid.sources.emplace_back(*interface);
  }
  grid.displayMode = environment.widgetFamily == WidgetFamily::large
                         ? NetworkSourceGridView::DisplayMode::large
                         : NetworkSourceGridView::DisplayMode::small;
  return grid.body(environment);
}

}  // namespace

View NetworkAdapterWidgetEntryView::body(const WidgetEnvironment& environment) const {
  const AdapterChoice choice = chooseAdapter(entry.configuration, entry.networkState.others,
                                             environment.preferredInterfaceNames);
  std::vector<View> layers;
  layers.push_back(networkWidgetDefaultStyle(card(choice, environment)));
  layers.push_back(refreshButtonInCorner(environment));
  return zstack(topCentre, std::move(layers))
      .background(
          BackgroundView{entry.configuration.showTimestamp.value_or(false)}.body(environment));
}

}  // namespace lanternfold
