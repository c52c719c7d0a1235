#include "Rendering/DeviceGrid.h"

#include <algorithm>
#include <cmath>

#include <cairo.h>

namespace lanternfold {
namespace {

/// One with which points become pixels by a scale and a shift alone.
bool isUpright(const cairo_matrix_t& matrix) {
  return matrix.xy == 0 && matrix.yx == 0 && matrix.xx > 0 && matrix.xx == matrix.yy;
}

bool drawsPixels(cairo_surface_t* target) {
  switch (cairo_surface_get_type(target)) {
    case CAIRO_SURFACE_TYPE_PDF:
    case CAIRO_SURFACE_TYPE_PS:
    case CAIRO_SURFACE_TYPE_SVG:
    case CAIRO_SURFACE_TYPE_RECORDING:
      return false;
    default:
      return true;
  }
}

}  // namespace

DeviceGrid::DeviceGrid(cairo_t* surface) {
  cairo_surface_t* const target = cairo_get_group_target(surface);
  cairo_matrix_t matrix;
  cairo_get_matrix(surface, &matrix);
  double xScale = 1;
  double yScale = 1;
  cairo_surface_get_device_scale(target, &xScale, &yScale);
  hasPixels_ = drawsPixels(target) && isUpright(matrix) && xScale == yScale && xScale > 0;
  if (hasPixels_) {
    deviceScale_ = xScale;
    scale_ = matrix.xx * xScale;
    origin_ = {matrix.x0 * xScale, matrix.y0 * yScale};
  }
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  cairo_clip_extents(surface, &left, &top, &right, &bottom);
  visible_ = roundedOut(toPixels(Rect{{left, top}, {right - left, bottom - top}}));
}

Point DeviceGrid::toPixels(Point point) const {
  return {origin_.x + point.x * scale_, origin_.y + point.y * scale_};
}

Rect DeviceGrid::toPixels(const Rect& rect) const {
  return {toPixels(rect.origin), {rect.size.width * scale_, rect.size.height * scale_}};
}

Rect DeviceGrid::toPoints(const Rect& pixels) const {
  return {{(pixels.left() - origin_.x) / scale_, (pixels.top() - origin_.y) / scale_},
          {pixels.size.width / scale_, pixels.size.height / scale_}};
}

void DeviceGrid::usePixels(cairo_t* surface) const {
  cairo_identity_matrix(surface);
  if (deviceScale_ != 1) cairo_scale(surface, 1 / deviceScale_, 1 / deviceScale_);
}

Rect DeviceGrid::aligned(const Rect& frame) const {
  return hasPixels_ ? toPoints(alignedPixels(frame)) : frame;
}

Rect DeviceGrid::alignedPixels(const Rect& frame) const {
  const Rect pixels = toPixels(frame);
  // The size is rounded by itself, so that things of one size stay of one size.
  const auto side = [](double length) { return std::max(1.0, std::round(length)); };
  return {{std::round(pixels.left()), std::round(pixels.top())},
          {side(pixels.size.width), side(pixels.size.height)}};
}

Rect intersection(const Rect& one, const Rect& other) {
  const Point origin{std::max(one.left(), other.left()), std::max(one.top(), other.top())};
  return {origin,
          {std::max(0.0, std::min(one.right(), other.right()) - origin.x),
           std::max(0.0, std::min(one.bottom(), other.bottom()) - origin.y)}};
}

Rect roundedOut(const Rect& rect) {
  const Point origin{std::floor(rect.left()), std::floor(rect.top())};
  return {origin, {std::ceil(rect.right()) - origin.x, std::ceil(rect.bottom()) - origin.y}};
}

}  // namespace lanternfold
