#include "Rendering/Gradients.h"

#include <functional>

#include <cairo.h>

namespace lanternfold {
namespace {

/// From the colour at 0 to that at 1, downwards.
CairoPattern makePattern(const Rgba& start, const Rgba& end) {
  CairoPattern pattern(cairo_pattern_create_linear(0, 0, 0, 1));
  cairo_pattern_add_color_stop_rgba(pattern.get(), 0, start.red, start.green, start.blue,
                                    start.alpha);
  cairo_pattern_add_color_stop_rgba(pattern.get(), 1, end.red, end.green, end.blue, end.alpha);
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

void Gradients::fill(cairo_t* surface, const Rect& frame, const FillLinearGradient& gradient) {
  const Key key{gradient.start, gradient.end};
  const CairoPattern* pattern = patterns_.find(key);
  if (pattern == nullptr) {
    pattern = &patterns_.keep(key, makePattern(gradient.start, gradient.end));
  }
  const Rect& whole = gradient.frame;
  cairo_matrix_t stretch;
  cairo_matrix_init_scale(&stretch, 1, 1 / whole.size.height);
  cairo_matrix_translate(&stretch, 0, -whole.top());
  cairo_pattern_set_matrix(pattern->get(), &stretch);
  cairo_set_source(surface, pattern->get());
  cairo_rectangle(surface, frame.left(), frame.top(), frame.size.width, frame.size.height);
  cairo_fill(surface);
}

}  // namespace lanternfold
