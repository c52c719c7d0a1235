#include "NetworkWidgetVexExtension/Views/NetworkStateWidgetEntryView.h"

#include <cstddef>
#include <ranges>
#include <vector>

#include "NetworkWidgetVexExtension/Views/NetworkSourceGridView.h"
#include "NetworkWidgetVexExtension/Views/NetworkWidget.h"

namespace lanternfold {
namespace {

/// A small widget has room for these and no further interface: of more sources it could only show
/// names and the ends of addresses.
constexpr std::size_t sourcesOfASmallWidget = 2;

bool isWorthShowing(const BasicInterface& interface) {
  return interface.active && !interface.IPv4.empty();
}

std::vector<AnyNetworkSource> sourcesOf(const NetworkState& state,
                                        const WidgetEnvironment& environment) {
  const NetworkSourceCategory shown = environment.shownCategories;
  std::vector<AnyNetworkSource> sources;
  if (shown.contains(NetworkSourceCategory::internet())) sources.emplace_back(state.internet);
  if (shown.contains(NetworkSourceCategory::wlan()) && state.wlan) {
    sources.emplace_back(*state.wlan);
  }
  if (shown.contains(NetworkSourceCategory::cellular()) && state.cellular) {
    sources.emplace_back(*state.cellular);
  }
  if (!shown.contains(NetworkSourceCategory::other())) return sources;
  const bool isSmall = environment.widgetFamily == WidgetFamily::small;
  for (const BasicInterface& interface : state.others | std::views::filter(isWorthShowing)) {
    if (isSmall && sources.size() >= sourcesOfASmallWidget) break;
    sources.emplace_back(interface);
  }
  return sources;
}

/// Whether something of a widget's last row would come to stand on the refresh button: the rows of
/// a small widget's columns, which are too narrow for icons beside them, and the icons of a medium
/// one's third row.
bool reachesTheButton(const NetworkSourceGridView::Shape& shape, WidgetFamily family) {
  if (family == WidgetFamily::small) return shape.columns > 1;
  return family == WidgetFamily::medium && shape.rows > 2;
}

}  // namespace

View NetworkStateWidgetEntryView::body(const WidgetEnvironment& outer) const {
  WidgetEnvironment environment = outer;
  environment.showsTimestamp = entry.configuration.showTimestamp.value_or(false);
  NetworkSourceGridView grid;
  grid.sources = sourcesOf(entry.networkState, environment);
  grid.displayMode = displayModeOf(environment.widgetFamily);
  environment.keepsBottomFree =
      environment.showsTimestamp || reachesTheButton(grid.shape(), environment.widgetFamily);
  return networkWidget(grid.body(environment), environment);
}

}  // namespace lanternfold
