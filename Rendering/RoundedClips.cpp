#include "Rendering/RoundedClips.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <utility>

#include <cairo.h>

namespace lanternfold {
namespace {

constexpr double quarter = std::numbers::pi / 2;

double boundedRadius(const Rect& frame, double radius) {
  return std::clamp(radius, 0.0, std::min(frame.size.width, frame.size.height) / 2);
}

/// Whether the point so far from both edges of a corner is outside its rounding.
bool isOutside(double fromSide, double fromEnd, double radius) {
  const double x = radius - std::max(fromSide, 0.0);
  const double y = radius - std::max(fromEnd, 0.0);
  return x > 0 && y > 0 && x * x + y * y > radius * radius;
}

/// One of the four squares that hold a frame's corners.
struct Corner {
  bool isRight = false;
  bool isBottom = false;
};
constexpr std::array corners{Corner{false, false}, Corner{true, false}, Corner{false, true},
                             Corner{true, true}};

double cornerSide(const RoundedClip& clip) { return std::ceil(clip.cornerRadius); }

Point originOf(const Corner& corner, const RoundedClip& clip) {
  const double side = cornerSide(clip);
  return {corner.isRight ? clip.frame.right() - side : clip.frame.left(),
          corner.isBottom ? clip.frame.bottom() - side : clip.frame.top()};
}

/// What the target shows of the square at `origin`.
CairoSurface copyOf(cairo_surface_t* target, Point origin, double side) {
  const int pixels = static_cast<int>(side);
  CairoSurface copy(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels, pixels));
  double xScale = 1;
  double yScale = 1;
  cairo_surface_get_device_scale(target, &xScale, &yScale);
  cairo_surface_set_device_scale(copy.get(), xScale, yScale);
  const CairoContext context(cairo_create(copy.get()));
  cairo_set_source_surface(context.get(), target, -origin.x / xScale, -origin.y / yScale);
  cairo_set_operator(context.get(), CAIRO_OPERATOR_SOURCE);
  cairo_paint(context.get());
  cairo_surface_set_device_scale(copy.get(), 1, 1);
  return copy;
}

}  // namespace

RoundedClip makeRoundedClip(const Rect& frame, double cornerRadius) {
  return {frame, boundedRadius(frame, cornerRadius)};
}

bool reachesCorner(const Rect& area, const RoundedClip& clip) {
  const Rect& frame = clip.frame;
  const double radius = clip.cornerRadius;
  const double left = area.left() - frame.left();
  const double right = frame.right() - area.right();
  const double top = area.top() - frame.top();
  const double bottom = frame.bottom() - area.bottom();
  return isOutside(left, top, radius) || isOutside(right, top, radius) ||
         isOutside(left, bottom, radius) || isOutside(right, bottom, radius);
}

std::size_t CornerShapes::KeyHash::operator()(const Key& key) const {
  return std::hash<double>()(key.radius) * 4 + (key.isRight ? 2U : 0U) + (key.isBottom ? 1U : 0U);
}

cairo_surface_t* CornerShapes::outside(double radius, bool isRight, bool isBottom) {
  const Key key{radius, isRight, isBottom};
  if (const CairoSurface* const known = shapes_.find(key)) return known->get();
  const int side = static_cast<int>(std::ceil(radius));
  CairoSurface shape(cairo_image_surface_create(CAIRO_FORMAT_A8, side, side));
  const CairoContext context(cairo_create(shape.get()));
  cairo_translate(context.get(), isRight ? side : 0, isBottom ? side : 0);
  cairo_scale(context.get(), isRight ? -1 : 1, isBottom ? -1 : 1);
  cairo_move_to(context.get(), 0, 0);
  cairo_line_to(context.get(), radius, 0);
  cairo_arc_negative(context.get(), radius, radius, radius, -quarter, -2 * quarter);
  cairo_close_path(context.get());
  cairo_fill(context.get());
  return shapes_.keep(key, std::move(shape)).get();
}

double RoundedClips::keepCorners(cairo_t* surface, const DeviceGrid& grid, const Rect& area) {
  double pixelsKept = 0;
  const Rect seen = intersection(area, grid.visiblePixels());
  for (Clip& each : clips_) {
    if (!each.corners.empty() || !reachesCorner(seen, each.shape)) continue;
    const double side = cornerSide(each.shape);
    for (const Corner& corner : corners) {
      each.corners.push_back(
          copyOf(cairo_get_group_target(surface), originOf(corner, each.shape), side));
      pixelsKept += side * side;
    }
  }
  return pixelsKept;
}

void RoundedClips::end(cairo_t* surface, const DeviceGrid& grid) {
  const Clip clip = std::move(clips_.back());
  clips_.pop_back();
  if (clip.corners.empty()) return;
  cairo_save(surface);
  grid.usePixels(surface);
  cairo_set_operator(surface, CAIRO_OPERATOR_SOURCE);
  for (std::size_t index = 0; index < corners.size(); ++index) {
    const auto& [isRight, isBottom] = corners[index];
    const Point origin = originOf(corners[index], clip.shape);
    cairo_set_source_surface(surface, clip.corners[index].get(), origin.x, origin.y);
    cairo_mask_surface(surface, shapes_.outside(clip.shape.cornerRadius, isRight, isBottom),
                       origin.x, origin.y);
  }
  cairo_restore(surface);
}

void addRoundedRectangle(cairo_t* surface, const Rect& frame, double cornerRadius) {
  const double radius = boundedRadius(frame, cornerRadius);
  if (!(radius > 0)) {
    cairo_rectangle(surface, frame.left(), frame.top(), frame.size.width, frame.size.height);
    return;
  }
  cairo_new_sub_path(surface);
  cairo_arc(surface, frame.right() - radius, frame.top() + radius, radius, -quarter, 0);
  cairo_arc(surface, frame.right() - radius, frame.bottom() - radius, radius, 0, quarter);
  cairo_arc(surface, frame.left() + radius, frame.bottom() - radius, radius, quarter, 2 * quarter);
  cairo_arc(surface, frame.left() + radius, frame.top() + radius, radius, 2 * quarter, 3 * quarter);
  cairo_close_path(surface);
}

}  // namespace lanternfold
