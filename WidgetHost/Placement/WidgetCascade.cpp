#include "WidgetHost/Placement/WidgetCascade.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>

#include "WidgetHost/Placement/MonitorLayout.h"

namespace lanternfold {
namespace {

/// What of it is on the screen.
Rect clipped(const Rect& frame, const Rect& area) {
  const double left = std::max(frame.left(), area.left());
  const double top = std::max(frame.top(), area.top());
  return {.origin = {left, top},
          .size = {std::min(frame.right(), area.right()) - left,
                   std::min(frame.bottom(), area.bottom()) - top}};
}

bool overlap(const Rect& one, const Rect& other) {
  return one.left() < other.right() && other.left() < one.right() && one.top() < other.bottom() &&
         other.top() < one.bottom();
}

bool overlapsAny(const Rect& frame, std::span<const Rect> others) {
  return std::ranges::any_of(others, [&](const Rect& other) { return overlap(frame, other); });
}

std::array<Rect, 4> cornersOf(const Rect& frame) {
  constexpr Size corner{cascadeStep, cascadeStep};
  const double right = frame.right() - cascadeStep;
  const double bottom = frame.bottom() - cascadeStep;
  return {{{{frame.left(), frame.top()}, corner},
           {{right, frame.top()}, corner},
           {{frame.left(), bottom}, corner},
           {{right, bottom}, corner}}};
}

/// Whether `frame` stands out by less than a step at each side of `above`.
bool covers(const Rect& above, const Rect& frame) {
  return frame.left() > above.left() - cascadeStep && frame.top() > above.top() - cascadeStep &&
         frame.right() < above.right() + cascadeStep &&
         frame.bottom() < above.bottom() + cascadeStep;
}

/// The places along one dimension of an area that are whole steps apart from one of them.
class Steps {
 public:
  /// Of a widget of `length` between the two sides; counted from `from`, or from what is nearest to
  /// that inside.
  Steps(double low, double high, double length, double from) {
    double room = std::max(0.0, high - low - length);
    if (room >= 2 * widgetGap) {
      low += widgetGap;
      room -= 2 * widgetGap;
    }
    const double offset = std::clamp(from - low, 0.0, room);
    first_ = static_cast<std::int64_t>(offset / cascadeStep);
    lowest_ = low + offset - static_cast<double>(first_) * cascadeStep;
    count_ = static_cast<std::int64_t>((room - (lowest_ - low)) / cascadeStep) + 1;
    isBackward_ = offset > room / 2;
  }

  [[nodiscard]] std::int64_t count() const { return count_; }
  [[nodiscard]] double at(std::int64_t index) const {
    const std::int64_t steps = isBackward_ ? first_ + count_ - index % count_ : first_ + index;
    return lowest_ + static_cast<double>(steps % count_) * cascadeStep;
  }

 private:
  double lowest_ = 0;
  std::int64_t count_ = 1;
  std::int64_t first_ = 0;
  bool isBackward_ = false;
};

}  // namespace

WidgetCascade::WidgetCascade(std::span<const Rect> standing, const Rect& area) : area_(area) {
  std::vector<Rect> frames;
  for (const Rect& frame : standing) frames.push_back(clipped(frame, area));
  for (std::size_t index = 0; index < frames.size(); ++index) {
    Standing one{.frame = frames[index], .corners = {}};
    const auto above = std::span(frames).subspan(index + 1);
    for (const Rect& corner : cornersOf(one.frame)) {
      if (!overlapsAny(corner, above)) one.corners.push_back(corner);
    }
    standing_.push_back(std::move(one));
  }
}

std::size_t WidgetCascade::hiddenWith(const Rect& frame) const {
  const Rect added = clipped(frame, area_);
  const auto isHidden = [&](const Standing& one) {
    const auto isCovered = [&](const Rect& corner) { return overlap(corner, added); };
    const bool losesAll = !one.corners.empty() && std::ranges::all_of(one.corners, isCovered);
    return losesAll || covers(one.frame, added);
  };
  return static_cast<std::size_t>(std::ranges::count_if(standing_, isHidden));
}

Point WidgetCascade::place(Size size, Point from) const {
  const Steps across(area_.left(), area_.right(), size.width, from.x);
  const Steps down(area_.top(), area_.bottom(), size.height, from.y);
  // A diagonal that has gone on at the opposite sides comes back to where it began after so many.
  const std::int64_t round = std::lcm(across.count(), down.count());
  Point best{across.at(0), down.at(0)};
  std::optional<std::size_t> fewest;
  for (std::int64_t index = 0; index < across.count() * down.count() && fewest != 0; ++index) {
    const Point place{across.at(index + index / round), down.at(index)};
    const std::size_t hidden = hiddenWith({.origin = place, .size = size});
    if (fewest && hidden >= *fewest) continue;
    fewest = hidden;
    best = place;
  }
  return best;
}

}  // namespace lanternfold
