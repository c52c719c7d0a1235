// Colours for cairo.
#pragma once

#include "Rendering/CairoHandles.h"
#include "ViewTree/Colour.h"

namespace lanternfold {

/// `colour` with its components within 0 and 1; those that are no number count as 0.
[[nodiscard]] Rgba drawableColour(const Rgba& colour);

/// Makes that of `colour` what is painted with.
void setColour(cairo_t* surface, const Rgba& colour);

}  // namespace lanternfold
