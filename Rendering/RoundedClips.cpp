#include "Rendering/RoundedClips.h"

#include <algorithm>
#include <numbers>

#include <cairo.h>

namespace lanternfold {
namespace {

/// Whether the point so far from both edges of a corner is outside its rounding.
bool isOutside(double fromSide, double fromEnd, double radius) {
  const double x = radius - std::max(fromSide, 0.0);
  const double y = radius - std::max(fromEnd, 0.0);
  return x > 0 && y > 0 && x * x + y * y > radius * radius;
}

}  // namespace

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

bool RoundedClips::clip(cairo_t* surface, const Rect& area) const {
  bool isClipped = false;
  for (const RoundedClip& each : clips_) {
    if (!reachesCorner(area, each)) continue;
    if (!isClipped) cairo_save(surface);
    isClipped = true;
    addRoundedRectangle(surface, each.frame, each.cornerRadius);
    cairo_clip(surface);
  }
  return isClipped;
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
