// Colours for cairo.
#pragma once

#include "Rendering/CairoHandles.h"
#include "ViewTree/Colour.h"

namespace lanternfold {

/// Makes `colour` what is painted with; components that are no number count as 0.
void setColour(cairo_t* surface, const Rgba& colour);

}  // namespace lanternfold
