// Paints set lines. On pixels each letter stands at its place to a quarter of a pixel, so that
// words are spaced evenly however small; in a file of vectors letters stay letters.
#pragma once

#include <string_view>

#include "Rendering/CairoHandles.h"
#include "Rendering/DeviceGrid.h"
#include "Rendering/GlyphCoverages.h"
#include "Rendering/TextLines.h"
#include "ViewTree/Colour.h"

namespace lanternfold {

/// How and where a line is painted.
struct LinePlace {
  Point baseline;  ///< its left end, in points
  double fontSize = 0;
  Rgba colour;
};

/// Paints lines, with a scratch image that it keeps. Used on one thread.
class TextPainter {
 public:
  /// On pixels the baseline is moved to the nearest row. Emoji keep their own colours and take the
  /// opacity of the line's.
  void paint(cairo_t* surface, const DeviceGrid& grid, const TextLine& line,
             const LinePlace& place);

 private:
  /// Covers `area` of the target with the plain parts of `line`; false, and nothing is, when there
  /// are letters too large for it.
  [[nodiscard]] bool paintLetters(cairo_t* surface, const DeviceGrid& grid, const TextLine& line,
                                  Point baseline, double fontPixels, const Rect& area);
  void makeRoom(Size pixels);

  GlyphCoverages glyphs_;
  CairoSurface coverage_;  // scratch, one byte a pixel
};

/// What stands in for a line that no typeface can show: a bar as long as it would be.
void paintLineStandIn(cairo_t* surface, double width, double fontSize, Point baseline,
                      const Rgba& colour);

}  // namespace lanternfold
