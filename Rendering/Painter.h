// Paints a draw list with cairo, on whatever surface the context draws to.
#pragma once

#include "Rendering/AssetFolder.h"
#include "Rendering/CairoHandles.h"
#include "ViewTree/DrawList.h"

namespace lanternfold {

/// Paints `list` in order; a unit of `surface` is a point. Used on one thread.
void paint(const DrawList& list, cairo_t* surface, AssetFolder& assets);

/// Adds a rectangle with rounded corners to the path; the radius is at most half a side.
void addRoundedRectangle(cairo_t* surface, const Rect& frame, double cornerRadius);

}  // namespace lanternfold
