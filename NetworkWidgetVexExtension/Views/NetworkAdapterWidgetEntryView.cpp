#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"

#include <variant>

#include "NetworkWidgetVexExtension/Views/AdapterChoice.h"
#include "NetworkWidgetVexExtension/Views/MissingAdapterView.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceGridView.h"
#include "NetworkWidgetVexExtension/Views/NetworkWidget.h"

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
  grid.displayMode = displayModeOf(environment.widgetFamily);
  return grid.body(environment);
}

}  // namespace

View NetworkAdapterWidgetEntryView::body(const WidgetEnvironment& outer) const {
  WidgetEnvironment environment = outer;
  environment.showsTimestamp = entry.configuration.showTimestamp.value_or(false);
  environment.keepsBottomFree = environment.showsTimestamp;
  const AdapterChoice choice = chooseAdapter(entry.configuration, entry.networkState.others,
                                             environment.preferredInterfaceNames);
  return networkWidget(card(choice, environment), environment);
}

}  // namespace lanternfold
