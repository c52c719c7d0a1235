#include "NetworkWidgetVexExtension/Views/NetworkSourceGridView.h"

#include <cstddef>
#include <utility>

#include "NetworkWidgetVexExtension/Views/NetworkSourceView.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

using DisplayMode = NetworkSourceGridView::DisplayMode;

NetworkSourceView sourceView(const NetworkSourceGridView& grid, const AnyNetworkSource& source) {
  if (grid.displayMode == DisplayMode::accessory) {
    return {NetworkSourceView::Direction::vertical, source, 1, false};
  }
  const bool isCrowded = grid.displayMode == DisplayMode::small && grid.sources.size() >= 2;
  const std::size_t rowLimit = isCrowded ? 4 : 8;
  return {NetworkSourceView::Direction::horizontal, source, rowLimit, !grid.hideBytesMeters};
}

/// Narrow, and hardly varying: cards that share a widget should not look as if they were of two.
std::vector<double> spacingsBesideOthers(DisplayMode mode) {
  return mode == DisplayMode::large ? std::vector<double>{5, 3, 2, 1}
                                    : std::vector<double>{3, 2, 1};
}

View noSource(const WidgetEnvironment& environment) {
  FrameNode whole;
  whole.width.maximum = unlimited;
  whole.height.maximum = unlimited;
  return text(environment.strings.localized("No source"), {NetworkWidgetDefaultStyle(environment).firstValueFont}).frame(whole);
}

}  // namespace

std::optional<DisplayMode> NetworkSourceGridView::displayModeOf(int rawValue) {
  for (const DisplayMode mode : {DisplayMode::accessory, DisplayMode::small, DisplayMode::large}) {
    if (static_cast<int>(mode) == rawValue) return mode;
  }
  return std::nullopt;
}

View NetworkSourceGridView::body(const WidgetEnvironment& outer) const {
  if (sources.empty()) return noSource(outer);
  WidgetEnvironment environment = outer;
  if (sources.size() > 1) environment.rowSpacings = spacingsBesideOthers(displayMode);
  std::vector<View> cards;
  cards.reserve(sources.size());
  for (const AnyNetworkSource& source : sources) {
    cards.push_back(sourceView(*this, source).body(environment));
  }
  if (cards.size() == 1) return std::move(cards.front());
  const double spacing = displayMode == DisplayMode::large ? 10 : 5;
  return vstack(HorizontalAlignment::leading, spacing, std::move(cards));
}

}  // namespace lanternfold
