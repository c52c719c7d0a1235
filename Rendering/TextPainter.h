// Paints set lines. On pixels each letter stands at its place to a quarter of a pixel, so that
// words are spaced evenly however small; in a file of vectors letters stay letters.
#pragma once

#include <string_view>

#include "Rendering/CairoHandles.h"
#include "Rendering/DeviceGrid.h"
#include "Rendering/TextLines.h"
#include "ViewTree/Colour.h"

namespace lanternfold {

/// Paints `line` from `baseline`, its left end, in points; on pixels that is moved to the nearest
/// row. Emoji keep their own colours and take the colour's opacity.
void paintLine(cairo_t* surface, const DeviceGrid& grid, const TextLine& line, Point baseline,
               const Rgba& colour);

/// What stands in for a line that no typeface can show: a bar as long as it would be.
void paintLineStandIn(cairo_t* surface, double width, double fontSize, Point baseline,
                      const Rgba& colour);

}  // namespace lanternfold
