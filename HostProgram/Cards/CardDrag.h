// A card that is being moved with the pointer: when a press becomes a move, and where the card is
// meanwhile and in the end.
//
// Pure. Made by: a card's window, for each press. Coordinates are points of the whole desktop.
#pragma once

#include <optional>
#include <span>

#include "WidgetHost/Placement/MonitorLayout.h"

namespace lanternfold {

/// A press that ends sooner was a click.
inline constexpr double dragThreshold = 6;

/// A monitor in its place on the desktop.
struct PlacedMonitor {
  MonitorArea area;
  Point origin;  ///< of its left top corner
  friend bool operator==(const PlacedMonitor&, const PlacedMonitor&) = default;
};

/// The monitor that holds `point`, else the nearest one; null without monitors.
[[nodiscard]] const PlacedMonitor* monitorAt(Point point, std::span<const PlacedMonitor> monitors);

class CardDrag {
 public:
  /// The card stands at `frame`, and the pointer went down at `pointer`.
  CardDrag(Rect frame, Point pointer) : frame_(frame), start_(pointer), pointer_(pointer) {}

  /// The pointer is at `pointer`. Whether the card is moved by now.
  bool moveTo(Point pointer);
  [[nodiscard]] bool isMoving() const { return isMoving_; }

  /// Where the card is under the pointer, snapped to nothing.
  [[nodiscard]] Rect frame() const;

  /// Where it lands when it is let go now, on the monitor under the pointer. `standing` are the
  /// other widgets. None without monitors.
  [[nodiscard]] std::optional<MonitorPosition> landing(
      std::span<const StandingWidget> standing, std::span<const PlacedMonitor> monitors) const;

 private:
  Rect frame_;
  Point start_;
  Point pointer_;
  bool isMoving_ = false;
};

/// The place of a card that stands at `frame` of the whole desktop: on the monitor of its middle,
/// inside of the work area. None without monitors.
[[nodiscard]] std::optional<MonitorPosition> standingPosition(
    const Rect& frame, std::span<const PlacedMonitor> monitors);

/// Where a card at `position` lands that is moved by a step of the grid in each direction given
/// (-1, 0 or 1), inside of its monitor's work area.
[[nodiscard]] MonitorPosition steppedPosition(const MonitorPosition& position, Size size, int right,
                                              int down, const MonitorArea& monitor);

}  // namespace lanternfold
