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

void setColour(cairo_t* surface, const Rgba& colour) {
  cairo_set_source_rgba(surface, component(colour.red), component(colour.green),
                        component(colour.blue), component(colour.alpha));
}

}  // namespace lanternfold
