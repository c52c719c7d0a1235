#include "Rendering/CirclePainter.h"

#include <algorithm>
#include <numbers>
#include <utility>

#include <cairo.h>

#include "Rendering/CairoColour.h"

namespace lanternfold {
namespace {

/// A larger one is stroked anew each time.
constexpr double largestKeptSide = 512;

void stroke(cairo_t* surface, const Rect& frame, double lineWidth) {
  const double radius = (std::min(frame.size.width, frame.size.height) - lineWidth) / 2;
  if (!(radius > 0) || !(lineWidth > 0)) return;
  cairo_set_line_width(surface, lineWidth);
  cairo_set_line_cap(surface, CAIRO_LINE_CAP_BUTT);
  cairo_set_line_join(surface, CAIRO_LINE_JOIN_MITER);
  cairo_set_miter_limit(surface, 10);
  cairo_new_sub_path(surface);
  cairo_arc(surface, (frame.left() + frame.right()) / 2, (frame.top() + frame.bottom()) / 2, radius,
            0, 2 * std::numbers::pi);
  cairo_stroke(surface);
}

}  // namespace

std::size_t CirclePainter::KeyHash::operator()(const Key& key) const {
  const std::hash<double> hash;
  return (hash(key.width) * 31 + hash(key.height)) * 31 + hash(key.lineWidth);
}

void CirclePainter::paint(cairo_t* surface, const DeviceGrid& grid, const StrokeCircle& circle) {
  const Rect frame = grid.aligned(circle.frame);
  const Rect pixels = grid.alignedPixels(circle.frame);
  setColour(surface, circle.colour);
  if (!grid.hasPixels() || std::max(pixels.size.width, pixels.size.height) > largestKeptSide) {
    stroke(surface, frame, circle.lineWidth);
    return;
  }
  cairo_surface_t* const shape =
      drawing({pixels.size.width, pixels.size.height, circle.lineWidth * grid.scale()});
  cairo_save(surface);
  grid.usePixels(surface);
  cairo_mask_surface(surface, shape, pixels.left(), pixels.top());
  cairo_restore(surface);
}

cairo_surface_t* CirclePainter::drawing(const Key& key) {
  if (const CairoSurface* const known = drawings_.find(key)) return known->get();
  CairoSurface image(cairo_image_surface_create(CAIRO_FORMAT_A8, static_cast<int>(key.width),
                                                static_cast<int>(key.height)));
  const CairoContext context(cairo_create(image.get()));
  stroke(context.get(), {{}, {key.width, key.height}}, key.lineWidth);
  return drawings_.keep(key, std::move(image)).get();
}

}  // namespace lanternfold
