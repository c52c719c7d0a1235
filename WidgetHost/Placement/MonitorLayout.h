// Where widgets stand on the monitors that there are: pure geometry, in points.
//
// Used by: the desktop's windows, and the desk for widgets that nobody has placed.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ViewTree/Geometry.h"
#include "WidgetHost/Store/PlacedWidget.h"

namespace lanternfold {

/// Points between the lines that a dragged widget snaps to, and between widgets side by side.
inline constexpr int placementGrid = 8;
inline constexpr int widgetGap = 24;

struct MonitorArea {
  std::string name;  ///< unique among those that are plugged in
  Size size;         ///< points
  Rect workArea;     ///< what panels leave free, from the monitor's left top corner
  bool isPrimary = false;
  friend bool operator==(const MonitorArea&, const MonitorArea&) = default;
};

/// A widget that stands on a monitor, from that monitor's left top corner.
struct StandingWidget {
  std::string monitor;
  Rect frame;
  friend bool operator==(const StandingWidget&, const StandingWidget&) = default;
};

/// Where a widget of `size` that is remembered at `position` is shown: on its monitor, or on the
/// primary one while that is not there, moved no further than is needed to lie inside of the work
/// area (at its left top corner where it is larger). None without a monitor.
[[nodiscard]] std::optional<MonitorPosition> shownPosition(const MonitorPosition& position,
                                                           Size size,
                                                           std::span<const MonitorArea> monitors);

/// A widget of that size, and where it is remembered.
struct RememberedWidget {
  MonitorPosition position;
  Size size;
};

/// The same beside others, in the order of adding. One that is brought in, as its monitor is not
/// there or has become smaller, and that would cover another one or be covered, stands aside of it
/// (`WidgetCascade`).
[[nodiscard]] std::optional<MonitorPosition> shownPositionBeside(
    std::span<const StandingWidget> standing, const RememberedWidget& widget,
    std::span<const MonitorArea> monitors);

/// Of each of `widgets`, which are in the order of adding, in their order. Those that stand where
/// they are remembered are the first; the others are brought in beside them.
[[nodiscard]] std::vector<std::optional<MonitorPosition>> shownPositions(
    std::span<const RememberedWidget> widgets, std::span<const MonitorArea> monitors);

/// Where a widget lands that was dragged to `frame`: its edges snap to those of the others and to
/// the gap beside them when they are near, else to the grid, and always stay inside of the work
/// area. `others` are those on the same monitor.
[[nodiscard]] Point snappedOrigin(const Rect& frame, std::span<const Rect> others,
                                  const MonitorArea& monitor);

/// The first place, column by column from the work area's right top corner, where nothing of
/// `standing` is nearer than the gap; as far from the work area's edges where there is room for
/// that. The monitor is the primary one, or another one when that is full. When all are, a place
/// above others on the primary one, aside of each of them (`WidgetCascade`). None without a
/// monitor. `standing` is in the order of adding.
[[nodiscard]] std::optional<MonitorPosition> freePosition(Size size,
                                                          std::span<const StandingWidget> standing,
                                                          std::span<const MonitorArea> monitors);

/// Where the widgets of a first set stand, in their order, on monitors without any: each at its
/// `freePosition` after those before it. One that would stand right below a wider one of the same
/// column comes after the others where all have room then, so that those stand edge below edge.
[[nodiscard]] std::vector<std::optional<MonitorPosition>> firstPositions(
    std::span<const Size> sizes, std::span<const MonitorArea> monitors);

}  // namespace lanternfold
