#include "WidgetHost/Placement/MonitorLayout.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "WidgetHost/Placement/WidgetCascade.h"

namespace lanternfold {
namespace {

/// No monitor reaches further; keeps what is computed here within the range of `int`.
constexpr double furthest = 1'000'000;

/// Without an answer of the desktop that makes sense, the whole monitor.
Rect usableArea(const MonitorArea& monitor) {
  const Rect& area = monitor.workArea;
  const auto isSensible = [](double length) { return length >= 1 && length <= furthest; };
  const bool isUsable = isSensible(area.size.width) && isSensible(area.size.height) &&
                        std::abs(area.left()) <= furthest && std::abs(area.top()) <= furthest;
  if (isUsable) return area;
  const Size& size = monitor.size;
  return {
      .origin = {},
      .size = {isSensible(size.width) ? size.width : 1, isSensible(size.height) ? size.height : 1}};
}

/// The whole number between the bounds that is nearest; the lower bound where there is no room.
int within(double value, double lowest, double highest) {
  const double first = std::ceil(lowest);
  if (!std::isfinite(value)) return static_cast<int>(first);
  const double last = std::max(first, std::floor(highest));
  return static_cast<int>(std::clamp(std::round(value), first, last));
}

MonitorPosition positionInside(const Rect& area, Size size, Point origin, std::string monitor) {
  return {.monitor = std::move(monitor),
          .x = within(origin.x, area.left(), area.right() - size.width),
          .y = within(origin.y, area.top(), area.bottom() - size.height)};
}

const MonitorArea* primaryOf(std::span<const MonitorArea> monitors) {
  if (monitors.empty()) return nullptr;
  const auto primary = std::ranges::find(monitors, true, &MonitorArea::isPrimary);
  return primary == monitors.end() ? &monitors.front() : &*primary;
}

Rect frameAt(const MonitorPosition& position, Size size) {
  return {.origin = {static_cast<double>(position.x), static_cast<double>(position.y)},
          .size = size};
}

/// One dimension of a frame.
struct Span {
  double low = 0;
  double high = 0;
  [[nodiscard]] double length() const { return high - low; }
};

Span across(const Rect& frame) { return {frame.left(), frame.right()}; }
Span down(const Rect& frame) { return {frame.top(), frame.bottom()}; }

bool isBeside(const Span& one, const Span& other) {
  return one.low < other.high + widgetGap && other.low < one.high + widgetGap;
}

/// Where `span` may snap to along one dimension.
class SnapLines {
 public:
  explicit SnapLines(Span span) : span_(span) {}

  void addEdges(const Span& other) {
    consider(other.low);
    consider(other.high - span_.length());
  }
  void addGaps(const Span& other) {
    consider(other.high + widgetGap);
    consider(other.low - widgetGap - span_.length());
  }
  /// The nearest of them, else the nearest line of the grid that begins at `gridStart`.
  [[nodiscard]] double snapped(double gridStart) const {
    if (nearest_) return *nearest_;
    return gridStart + std::round((span_.low - gridStart) / placementGrid) * placementGrid;
  }

 private:
  void consider(double low) {
    const double distance = std::abs(low - span_.low);
    if (distance > placementGrid) return;
    if (!nearest_ || distance < std::abs(*nearest_ - span_.low)) nearest_ = low;
  }

  Span span_;
  std::optional<double> nearest_;
};

double snappedAlong(Span (*dimension)(const Rect&), Span (*otherDimension)(const Rect&),
                    const Rect& frame, std::span<const Rect> others, const Rect& area) {
  SnapLines lines(dimension(frame));
  lines.addEdges(dimension(area));
  for (const Rect& other : others) {
    lines.addEdges(dimension(other));
    if (isBeside(otherDimension(frame), otherDimension(other))) lines.addGaps(dimension(other));
  }
  return lines.snapped(dimension(area).low);
}

Rect insetArea(const Rect& area) {
  return {.origin = {area.left() + widgetGap, area.top() + widgetGap},
          .size = {area.size.width - 2 * widgetGap, area.size.height - 2 * widgetGap}};
}

bool isFree(const Rect& frame, std::span<const Rect> standing) {
  return std::ranges::none_of(standing, [&](const Rect& other) {
    return isBeside(across(frame), across(other)) && isBeside(down(frame), down(other));
  });
}

std::vector<double> sortedInside(std::vector<double> values, double lowest, double highest) {
  std::erase_if(values, [&](double value) { return !(value >= lowest && value <= highest); });
  std::ranges::sort(values);
  const auto repeated = std::ranges::unique(values);
  values.erase(repeated.begin(), repeated.end());
  return values;
}

/// Every place that touches a side of the area or another widget's gap is looked at: where there is
/// a free one at all, there is one of those.
std::optional<Point> freePlace(Size size, std::span<const Rect> standing, const Rect& area) {
  std::vector<double> columns{area.right() - size.width};
  std::vector<double> rows{area.top()};
  for (const Rect& other : standing) {
    columns.push_back(other.left() - widgetGap - size.width);
    rows.push_back(other.bottom() + widgetGap);
  }
  columns = sortedInside(std::move(columns), area.left(), area.right() - size.width);
  rows = sortedInside(std::move(rows), area.top(), area.bottom() - size.height);
  std::ranges::reverse(columns);
  for (const double x : columns) {
    for (const double y : rows) {
      if (isFree({.origin = {x, y}, .size = size}, standing)) return Point{x, y};
    }
  }
  return std::nullopt;
}

std::vector<Rect> framesOn(const MonitorArea& monitor, std::span<const StandingWidget> standing) {
  std::vector<Rect> frames;
  for (const StandingWidget& widget : standing) {
    if (widget.monitor == monitor.name) frames.push_back(widget.frame);
  }
  return frames;
}

std::optional<MonitorPosition> freePositionOn(const MonitorArea& monitor, Size size,
                                              std::span<const StandingWidget> standing) {
  const std::vector<Rect> frames = framesOn(monitor, standing);
  const Rect area = usableArea(monitor);
  auto place = freePlace(size, frames, insetArea(area));
  if (!place) place = freePlace(size, frames, area);
  if (!place) return std::nullopt;
  return positionInside(area, size, *place, monitor.name);
}

std::optional<MonitorPosition> positionWithRoom(Size size, std::span<const StandingWidget> standing,
                                                std::span<const MonitorArea> monitors) {
  const MonitorArea* const primary = primaryOf(monitors);
  if (primary == nullptr) return std::nullopt;
  if (auto position = freePositionOn(*primary, size, standing)) return position;
  for (const MonitorArea& monitor : monitors) {
    if (&monitor == primary) continue;
    if (auto position = freePositionOn(monitor, size, standing)) return position;
  }
  return std::nullopt;
}

StandingWidget standingAt(const MonitorPosition& position, Size size) {
  return {.monitor = position.monitor, .frame = frameAt(position, size)};
}

/// Columns are aligned at the right.
bool isBelowWiderOne(const StandingWidget& widget, std::span<const StandingWidget> standing) {
  return std::ranges::any_of(standing, [&](const StandingWidget& other) {
    return other.monitor == widget.monitor && other.frame.right() == widget.frame.right() &&
           other.frame.bottom() + widgetGap == widget.frame.top() &&
           other.frame.size.width > widget.frame.size.width;
  });
}

/// None when one of them has no room.
std::optional<std::vector<std::optional<MonitorPosition>>> evenPositions(
    std::span<const Size> sizes, std::span<const MonitorArea> monitors) {
  std::vector<std::optional<MonitorPosition>> positions(sizes.size());
  std::vector<StandingWidget> standing;
  for (const bool isLast : {false, true}) {
    for (std::size_t index = 0; index < sizes.size(); ++index) {
      if (positions[index]) continue;
      const auto position = positionWithRoom(sizes[index], standing, monitors);
      if (!position) return std::nullopt;
      const StandingWidget widget = standingAt(*position, sizes[index]);
      if (!isLast && isBelowWiderOne(widget, standing)) continue;
      positions[index] = position;
      standing.push_back(widget);
    }
  }
  return positions;
}

}  // namespace

std::optional<MonitorPosition> shownPosition(const MonitorPosition& position, Size size,
                                             std::span<const MonitorArea> monitors) {
  const auto own = std::ranges::find(monitors, position.monitor, &MonitorArea::name);
  const MonitorArea* const monitor = own == monitors.end() ? primaryOf(monitors) : &*own;
  if (monitor == nullptr) return std::nullopt;
  const Point origin{static_cast<double>(position.x), static_cast<double>(position.y)};
  return positionInside(usableArea(*monitor), size, origin, monitor->name);
}

std::optional<MonitorPosition> shownPositionBeside(std::span<const StandingWidget> standing,
                                                   const RememberedWidget& widget,
                                                   std::span<const MonitorArea> monitors) {
  auto shown = shownPosition(widget.position, widget.size, monitors);
  if (!shown || *shown == widget.position) return shown;
  const auto& monitor = *std::ranges::find(monitors, shown->monitor, &MonitorArea::name);
  const Rect area = usableArea(monitor);
  const WidgetCascade cascade(framesOn(monitor, standing), area);
  const Rect frame = frameAt(*shown, widget.size);
  if (cascade.hiddenWith(frame) == 0) return shown;
  const Point aside = cascade.place(widget.size, frame.origin);
  return positionInside(area, widget.size, aside, monitor.name);
}

std::vector<std::optional<MonitorPosition>> shownPositions(
    std::span<const RememberedWidget> widgets, std::span<const MonitorArea> monitors) {
  std::vector<std::optional<MonitorPosition>> positions(widgets.size());
  std::vector<StandingWidget> standing;
  const auto stand = [&](std::size_t index, std::optional<MonitorPosition> position) {
    if (!position) return;
    standing.push_back(standingAt(*position, widgets[index].size));
    positions[index] = std::move(position);
  };
  for (std::size_t index = 0; index < widgets.size(); ++index) {
    const auto& [position, size] = widgets[index];
    if (shownPosition(position, size, monitors) == position) stand(index, position);
  }
  for (std::size_t index = 0; index < widgets.size(); ++index) {
    if (!positions[index]) stand(index, shownPositionBeside(standing, widgets[index], monitors));
  }
  return positions;
}

Point snappedOrigin(const Rect& frame, std::span<const Rect> others, const MonitorArea& monitor) {
  const Rect area = usableArea(monitor);
  const Point snapped{snappedAlong(across, down, frame, others, area),
                      snappedAlong(down, across, frame, others, area)};
  const MonitorPosition inside = positionInside(area, frame.size, snapped, monitor.name);
  return {static_cast<double>(inside.x), static_cast<double>(inside.y)};
}

std::optional<MonitorPosition> freePosition(Size size, std::span<const StandingWidget> standing,
                                            std::span<const MonitorArea> monitors) {
  const MonitorArea* const primary = primaryOf(monitors);
  if (primary == nullptr) return std::nullopt;
  if (auto position = positionWithRoom(size, standing, monitors)) return position;
  const Rect area = usableArea(*primary);
  const WidgetCascade cascade(framesOn(*primary, standing), area);
  const Point rightTopCorner{area.right() - size.width, area.top()};
  return positionInside(area, size, cascade.place(size, rightTopCorner), primary->name);
}

std::vector<std::optional<MonitorPosition>> firstPositions(std::span<const Size> sizes,
                                                           std::span<const MonitorArea> monitors) {
  if (auto even = evenPositions(sizes, monitors)) return *std::move(even);
  std::vector<std::optional<MonitorPosition>> positions;
  std::vector<StandingWidget> standing;
  for (const Size size : sizes) {
    positions.push_back(freePosition(size, standing, monitors));
    if (positions.back()) standing.push_back(standingAt(*positions.back(), size));
  }
  return positions;
}

}  // namespace lanternfold
