// How texts are measured: the font a view asks for, and the seam to whoever knows fonts.
//
// Production side: `PangoTextMeasurer` (Rendering). Fake: `MetricTextMeasurer`.
#pragma once

#include <string_view>

#include "ViewTree/Geometry.h"

namespace lanternfold {

enum class FontWeight { regular, bold };

/// The height of a line: as the font's designer set it, or no more than the font's size, for
/// digits and arrows that stack closely.
enum class FontLeading { standard, tight };

/// The system font at a size in points.
struct Font {
  double size = 12;
  FontWeight weight = FontWeight::regular;
  FontLeading leading = FontLeading::standard;

  friend bool operator==(const Font&, const Font&) = default;
};

/// Any thread that owns the measurer; never fails. `text` is one line of valid UTF-8, plain, never
/// markup. The same text and font always have the same size, whatever the scale of the picture.
class TextMeasurer {
 public:
  virtual ~TextMeasurer() = default;

  [[nodiscard]] virtual Size measure(std::string_view text, const Font& font) const = 0;

  /// How far below the top of a line in `font` its baseline stands, whatever the text says.
  [[nodiscard]] virtual double baseline(const Font& font) const = 0;
};

}  // namespace lanternfold
