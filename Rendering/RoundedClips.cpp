#include "Rendering/RoundedClips.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

#include <cairo.h>

#include "Rendering/DeviceGrid.h"

namespace lanternfold {
namespace {

/// Whether the point so far from both edges of a corner is outside its rounding.
bool isOutside(double fromSide, double fromEnd, double radius) {
  const double x = radius - std::max(fromSide, 0.0);
  const double y = radius - std::max(fromEnd, 0.0);
  return x > 0 && y > 0 && x * x + y * y > radius * radius;
}

void addRectangle(cairo_t* surface, const Rect& rect) {
  cairo_rectangle(surface, rect.left(), rect.top(), rect.size.width, rect.size.height);
}

/// A corner of `frame`, between whole units of the target where the frame's own edges are.
Rect cornerOf(const Rect& frame, double side, bool isRight, bool isBottom) {
  return {{isRight ? frame.right() - side : frame.left(),
           isBottom ? frame.bottom() - side : frame.top()},
          {side, side}};
}

/// All but the corners at once, clipped by rectangles, which is cheap; then each corner.
void paintInPieces(cairo_t* surface, const Rect& area, const RoundedClip& clip,
                   const std::function<void()>& paint) {
  const Rect& frame = clip.frame;
  const double side = clip.cornerSide;
  cairo_save(surface);
  addRectangle(surface, {{frame.left() + side, frame.top()}, {frame.size.width - 2 * side, side}});
  addRectangle(surface, {{frame.left(), frame.top() + side},
                         {frame.size.width, frame.size.height - 2 * side}});
  addRectangle(surface,
               {{frame.left() + side, frame.bottom() - side}, {frame.size.width - 2 * side, side}});
  cairo_clip(surface);
  paint();
  cairo_restore(surface);
  for (const bool isRight : {false, true}) {
    for (const bool isBottom : {false, true}) {
      const Rect corner = cornerOf(frame, side, isRight, isBottom);
      if (intersection(corner, area).size == Size{}) continue;
      cairo_save(surface);
      addRectangle(surface, corner);
      cairo_clip(surface);
      addRoundedRectangle(surface, frame, clip.cornerRadius);
      cairo_clip(surface);
      paint();
      cairo_restore(surface);
    }
  }
}

}  // namespace

RoundedClip makeRoundedClip(const Rect& frame, double cornerRadius, double scale) {
  const double side = std::ceil(cornerRadius * scale) / scale;
  const bool hasRoom = 2 * side <= std::min(frame.size.width, frame.size.height);
  return {frame, cornerRadius, hasRoom ? side : 0};
}

bool reachesCorner(const Rect& area, const RoundedClip& clip) {
  const Rect& frame = clip.frame;
  const double radius =
      std::clamp(clip.cornerRadius, 0.0, std::min(frame.size.width, frame.size.height) / 2);
  const double left = area.left() - frame.left();
  const double right = frame.right() - area.right();
  const double top = area.top() - frame.top();
  const double bottom = frame.bottom() - area.bottom();
  return isOutside(left, top, radius) || isOutside(right, top, radius) ||
         isOutside(left, bottom, radius) || isOutside(right, bottom, radius);
}

void RoundedClips::paint(cairo_t* surface, const Rect& area,
                         const std::function<void()>& paint) const {
  std::vector<RoundedClip> reached;
  std::ranges::copy_if(clips_, std::back_inserter(reached),
                       [&](const RoundedClip& each) { return reachesCorner(area, each); });
  if (reached.empty()) {
    paint();
  } else if (reached.size() == 1 && reached.front().cornerSide > 0) {
    paintInPieces(surface, area, reached.front(), paint);
  } else {
    cairo_save(surface);
    for (const RoundedClip& each : reached) {
      addRoundedRectangle(surface, each.frame, each.cornerRadius);
      cairo_clip(surface);
    }
    paint();
    cairo_restore(surface);
  }
}

void addRoundedRectangle(cairo_t* surface, const Rect& frame, double cornerRadius) {
  const double radius =
      std::clamp(cornerRadius, 0.0, std::min(frame.size.width, frame.size.height) / 2);
  if (!(radius > 0)) {
    cairo_rectangle(surface, frame.left(), frame.top(), frame.size.width, frame.size.height);
    return;
  }
  constexpr double quarter = std::numbers::pi / 2;
  cairo_new_sub_path(surface);
  cairo_arc(surface, frame.right() - radius, frame.top() + radius, radius, -quarter, 0);
  cairo_arc(surface, frame.right() - radius, frame.bottom() - radius, radius, 0, quarter);
  cairo_arc(surface, frame.left() + radius, frame.bottom() - radius, radius, quarter, 2 * quarter);
  cairo_arc(surface, frame.left() + radius, frame.top() + radius, radius, 2 * quarter, 3 * quarter);
  cairo_close_path(surface);
}

}  // namespace lanternfold
