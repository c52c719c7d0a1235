#include "Rendering/CairoColour.h"

#include <cairo.h>

namespace lanternfold {
namespace {

/// Within 0 and 1; cairo would pass on what is no number.
double component(double value) {
  if (!(value > 0)) return 0;
  return value < 1 ? value : 1;
}

}  // namespace

Rgba drawableColour(const Rgba& colour) {
  return {component(colour.red), component(colour.green), component(colour.blue),
          component(colour.alpha)};
}

void setColour(cairo_t* surface, const Rgba& colour) {
  const Rgba drawn = drawableColour(colour);
  cairo_set_source_rgba(surface, drawn.red, drawn.green, drawn.blue, drawn.alpha);
}

}  // namespace lanternfold
