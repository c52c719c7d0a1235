// A text measurer of fixed metrics, so that layouts in tests do not depend on installed fonts: a
// character is 0.5 of the font's size wide (0.6 in bold), a line 1.2 of it high (1 when tight),
// its baseline 0.9 below the top (0.8 when tight).
#pragma once

#include <algorithm>
#include <string_view>

#include "ViewTree/TextMeasurer.h"

namespace lanternfold {

class MetricTextMeasurer final : public TextMeasurer {
 public:
  [[nodiscard]] Size measure(std::string_view text, const Font& font) const override {
    // Every byte that does not continue a UTF-8 character begins one.
    const auto characters = std::ranges::count_if(
        text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; });
    const double advance = font.weight == FontWeight::bold ? 0.6 : 0.5;
    const double line = font.leading == FontLeading::tight ? 1 : 1.2;
    return {static_cast<double>(characters) * advance * font.size, line * font.size};
  }

  [[nodiscard]] double baseline(const Font& font) const override {
    return (font.leading == FontLeading::tight ? 0.8 : 0.9) * font.size;
  }
};

}  // namespace lanternfold
