#include "Rendering/Gradients.h"

#include <functional>
#include <utility>

#include <cairo.h>

#include "Rendering/CairoColour.h"

namespace lanternfold {
namespace {

/// From the colour at 0 to that at 1, downwards.
CairoPattern makePattern(const Rgba& start, const Rgba& end) {
  CairoPattern pattern(cairo_pattern_create_linear(0, 0, 0, 1));
  for (const auto& [place, colour] : {std::pair(0.0, start), std::pair(1.0, end)}) {
    const Rgba drawn = drawableColour(colour);
    cairo_pattern_add_color_stop_rgba(pattern.get(), place, drawn.red, drawn.green, drawn.blue,
                                      drawn.alpha);
  }
  return pattern;
}

}  // namespace

std::size_t Gradients::KeyHash::operator()(const Key& key) const {
  std::size_t hash = 0;
  for (const Rgba& colour : {key.start, key.end}) {
    for (const double each : {colour.red, colour.green, colour.blue, colour.alpha}) {
      hash = hash * 31 + std::hash<double>()(each);
    }
  }
  return hash;
}

void Gradients::fill(cairo_t* surface, const Rect& frame, const Rgba& start, const Rgba& end) {
  const CairoPattern* pattern = patterns_.find(Key{start, end});
  if (pattern == nullptr) pattern = &patterns_.keep({start, end}, makePattern(start, end));
  cairo_matrix_t stretch;
  cairo_matrix_init_scale(&stretch, 1, 1 / frame.size.height);
  cairo_matrix_translate(&stretch, 0, -frame.top());
  cairo_pattern_set_matrix(pattern->get(), &stretch);
  cairo_set_source(surface, pattern->get());
  cairo_rectangle(surface, frame.left(), frame.top(), frame.size.width, frame.size.height);
  cairo_fill(surface);
}

}  // namespace lanternfold
