#include "NetworkWidgetVexExtension/Views/NetworkSourceGridView.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <ranges>
#include <utility>

#include "NetworkWidgetVexExtension/Views/BytesMeters.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceView.h"
#include "NetworkWidgetVexExtension/Views/RowSpacing.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

using DisplayMode = NetworkSourceGridView::DisplayMode;

/// No widget has room for more.
constexpr std::size_t mostCards = 24;
/// Cards of more rows are too low for meters of the usual size.
constexpr std::size_t mostRowsWithLargeMeters = 2;
constexpr std::size_t mostRowsWithLargeMetersInALargeWidget = 4;
/// In two columns, cards of more rows are too low for any; the rows of texts go first then.
constexpr std::size_t mostRowsWithMeters = 3;
constexpr double columnSpacing = 8;
constexpr double closestRows = 1;
/// How far apart the rows of the only source may stand, in their heights: further, and they would
/// fall to pieces.
constexpr double widestRowsAlone = 1.4;
/// And those of several sources, in points: closer than the sources themselves, or one could not
/// tell where the next one begins.
constexpr double widestRowsInLargeWidgets = 8;
constexpr double widestRowsElsewhere = 3;
/// Between rows of two columns; in one column the cards stand as two of them would.
constexpr double gridRowSpacing = 6;

NetworkSourceView sourceView(const NetworkSourceGridView& grid, const AnyNetworkSource& source) {
  if (grid.displayMode == DisplayMode::accessory) {
    return {NetworkSourceView::Direction::vertical, source, 1, false};
  }
  const bool isCrowded = grid.displayMode == DisplayMode::small && grid.sources.size() >= 2;
  const std::size_t rowLimit = isCrowded ? 4 : 8;
  return {NetworkSourceView::Direction::horizontal, source, rowLimit, !grid.hideBytesMeters};
}

/// What the sources that share a widget have in common.
WidgetEnvironment sharedBy(const NetworkSourceGridView& grid, const WidgetEnvironment& outer) {
  const bool isLarge = grid.displayMode == DisplayMode::large;
  const NetworkSourceGridView::Shape shape = grid.shape();
  WidgetEnvironment environment = outer;
  environment.hasNarrowCards = outer.widgetFamily == WidgetFamily::small || shape.columns > 1;
  const std::size_t mostRows =
      isLarge ? mostRowsWithLargeMetersInALargeWidget : mostRowsWithLargeMeters;
  if (shape.rows > mostRows) environment.bytesMeterSize = BytesCircularMeterSize::small;
  return environment;
}

/// A card of a grid tells at least who it is and its address, and is as high as its meters, whether
/// it is wide enough for them or not; what has no room for that is left out. In accessory widgets
/// who it is must do.
double leastCardHeight(const NetworkSourceGridView& grid, const WidgetEnvironment& environment) {
  const double row = NetworkWidgetDefaultStyle(environment).rowHeight();
  if (grid.displayMode == DisplayMode::accessory) return row;
  const double rows = 2 * row + closestRows;
  const bool hasRoomForMeters =
      grid.displayMode == DisplayMode::large || grid.shape().rows <= mostRowsWithMeters;
  if (grid.hideBytesMeters || !hasRoomForMeters) return rows;
  return std::max(rows, bytesMeterSide(environment.bytesMeterSize));
}

double widestRowSpacing(const NetworkSourceGridView& grid, double rowHeight) {
  if (grid.sources.size() == 1) return std::floor(widestRowsAlone * rowHeight);
  return grid.displayMode == DisplayMode::large ? widestRowsInLargeWidgets : widestRowsElsewhere;
}

/// Rows of two columns stand close, so that each card has as many of them as it can.
std::vector<double> rowSpacings(const NetworkSourceGridView& grid, double spacing,
                                const WidgetEnvironment& environment) {
  if (grid.shape().columns > 1) return {2, closestRows};
  const NetworkWidgetDefaultStyle style(environment);
  const double height =
      widgetSize(environment.widgetFamily).height - style.padding.top - style.padding.bottom;
  StackedSources stacked{.rowHeight = style.rowHeight(),
                         .leastSourceHeight = leastCardHeight(grid, environment),
                         .between = spacing,
                         .available = height,
                         .widest = widestRowSpacing(grid, style.rowHeight()),
                         .endAboveALine = environment.keepsBottomFree};
  for (const AnyNetworkSource& source : grid.sources | std::views::take(mostCards)) {
    const std::size_t rows = compressedListRepresentationOf(source, environment.strings).size();
    stacked.rowCounts.push_back(std::min(rows, sourceView(grid, source).rowLimit));
  }
  return rowSpacingsOf(stacked);
}

FrameNode atLeastAsHighAs(double height) {
  FrameNode frame;
  frame.height.minimum = height;
  frame.alignment = topLeading;
  return frame;
}

View noSource(const WidgetEnvironment& environment) {
  FrameNode whole;
  whole.width.maximum = unlimited;
  whole.height.maximum = unlimited;
  return text(environment.strings.localized("No source"),
              {NetworkWidgetDefaultStyle(environment).firstValueFont})
      .frame(whole);
}

}  // namespace

std::optional<DisplayMode> NetworkSourceGridView::displayModeOf(int rawValue) {
  for (const DisplayMode mode : {DisplayMode::accessory, DisplayMode::small, DisplayMode::large}) {
    if (static_cast<int>(mode) == rawValue) return mode;
  }
  return std::nullopt;
}

NetworkSourceGridView::Shape NetworkSourceGridView::shape() const {
  const std::size_t columns = displayMode == DisplayMode::large || sources.size() <= 2 ? 1 : 2;
  return {.columns = columns, .rows = (sources.size() + columns - 1) / columns};
}

View NetworkSourceGridView::body(const WidgetEnvironment& outer) const {
  if (sources.empty()) return noSource(outer);
  WidgetEnvironment environment = sharedBy(*this, outer);
  const double spacing = displayMode == DisplayMode::large ? 10 : 5;
  environment.rowSpacings = rowSpacings(*this, spacing, environment);
  std::vector<View> cards;
  for (const AnyNetworkSource& source : sources | std::views::take(mostCards)) {
    cards.push_back(sourceView(*this, source).body(environment));
  }
  if (cards.size() == 1) return std::move(cards.front());
  if (cards.size() == 2) return vstack(HorizontalAlignment::leading, spacing, std::move(cards));
  const double leastHeight = leastCardHeight(*this, environment);
  for (View& card : cards) card = std::move(card).frame(atLeastAsHighAs(leastHeight));
  return wholeGrid({.columns = shape().columns,
                    .columnSpacing = columnSpacing,
                    .rowSpacing = shape().columns > 1 ? gridRowSpacing : spacing,
                    .alignment = topLeading},
                   std::move(cards));
}

}  // namespace lanternfold
