#include "HostProgram/Cards/CardDrag.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lanternfold {
namespace {

/// How far `value` lies outside of the range.
double distance(double value, double first, double last) {
  return std::max({first - value, value - last, 0.0});
}

double distance(Point point, const PlacedMonitor& monitor) {
  const double across =
      distance(point.x, monitor.origin.x, monitor.origin.x + monitor.area.size.width - 1);
  const double down =
      distance(point.y, monitor.origin.y, monitor.origin.y + monitor.area.size.height - 1);
  return std::hypot(across, down);
}

/// The next line of the grid in the direction of `step`.
int steppedLine(int line, int step) {
  if (step == 0) return line;
  const double lines = static_cast<double>(line) / placementGrid;
  const double next = step > 0 ? std::floor(lines) + 1 : std::ceil(lines) - 1;
  return static_cast<int>(next) * placementGrid;
}

}  // namespace

const PlacedMonitor* monitorAt(Point point, std::span<const PlacedMonitor> monitors) {
  const auto nearest = std::ranges::min_element(
      monitors, {}, [point](const PlacedMonitor& monitor) { return distance(point, monitor); });
  return nearest == monitors.end() ? nullptr : &*nearest;
}

bool CardDrag::moveTo(Point pointer) {
  pointer_ = pointer;
  if (std::hypot(pointer.x - start_.x, pointer.y - start_.y) >= dragThreshold) isMoving_ = true;
  return isMoving_;
}

Rect CardDrag::frame() const {
  if (!isMoving_) return frame_;
  return {{frame_.origin.x + pointer_.x - start_.x, frame_.origin.y + pointer_.y - start_.y},
          frame_.size};
}

std::optional<MonitorPosition> CardDrag::landing(std::span<const StandingWidget> standing,
                                                 std::span<const PlacedMonitor> monitors) const {
  const PlacedMonitor* const monitor = monitorAt(pointer_, monitors);
  if (monitor == nullptr) return std::nullopt;
  Rect local = frame();
  local.origin.x -= monitor->origin.x;
  local.origin.y -= monitor->origin.y;
  std::vector<Rect> others;
  for (const StandingWidget& other : standing) {
    if (other.monitor == monitor->area.name) others.push_back(other.frame);
  }
  const Point landed = snappedOrigin(local, others, monitor->area);
  return MonitorPosition{.monitor = monitor->area.name,
                         .x = static_cast<int>(std::lround(landed.x)),
                         .y = static_cast<int>(std::lround(landed.y))};
}

std::optional<MonitorPosition> standingPosition(const Rect& frame,
                                                std::span<const PlacedMonitor> monitors) {
  const Point middle{frame.left() + frame.size.width / 2, frame.top() + frame.size.height / 2};
  const PlacedMonitor* const monitor = monitorAt(middle, monitors);
  if (monitor == nullptr) return std::nullopt;
  const MonitorPosition position{
      .monitor = monitor->area.name,
      .x = static_cast<int>(std::lround(frame.left() - monitor->origin.x)),
      .y = static_cast<int>(std::lround(frame.top() - monitor->origin.y))};
  return shownPosition(position, frame.size, std::span(&monitor->area, 1));
}

MonitorPosition steppedPosition(const MonitorPosition& position, Size size, int right, int down,
                                const MonitorArea& monitor) {
  const MonitorPosition stepped{.monitor = monitor.name,
                                .x = steppedLine(position.x, right),
                                .y = steppedLine(position.y, down)};
  const std::span<const MonitorArea> onlyThis(&monitor, 1);
  return shownPosition(stepped, size, onlyThis).value_or(stepped);
}

}  // namespace lanternfold
