// Measures texts with the fonts that the painter will paint them in.
#pragma once

#include <string_view>

#include "ViewTree/TextMeasurer.h"

namespace lanternfold {

class TextLines;

/// Used on one thread. A font that is not installed falls back to another that is, glyph by glyph.
/// The height is that of a line of the system font, whatever the text says.
class PangoTextMeasurer final : public TextMeasurer {
 public:
  /// `lines` outlives the measurer.
  explicit PangoTextMeasurer(TextLines& lines) : lines_(lines) {}

  [[nodiscard]] Size measure(std::string_view text, const Font& font) const override;
  [[nodiscard]] double baseline(const Font& font) const override;

 private:
  TextLines& lines_;
};

}  // namespace lanternfold
