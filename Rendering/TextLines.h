// One line of plain text, set by pango: the common ground of measuring and painting, so that what
// is painted is exactly what was measured.
#pragma once

#include <string_view>

#include "Rendering/CairoHandles.h"
#include "ViewTree/TextMeasurer.h"

using PangoContext = struct _PangoContext;

namespace lanternfold {

/// `text` in `font`, a point being a unit of the context. Invalid UTF-8 shows replacement
/// characters; markup is never interpreted.
[[nodiscard]] PangoLayoutHandle makeTextLine(PangoContext* context, std::string_view text,
                                             const Font& font);

/// What the line takes up, in points.
[[nodiscard]] Size lineSize(PangoLayout* line, const Font& font);

/// How far below the top of `lineSize` the baseline stands, in points.
[[nodiscard]] double baselineOffset(PangoLayout* line, const Font& font);

/// Makes a context's texts the same size at every scale of a picture: no hinting, and glyphs at
/// fractions of a pixel.
void makeScaleIndependent(PangoContext* context);

}  // namespace lanternfold
