// Measures texts with the fonts that the painter will paint them in.
#pragma once

#include <memory>

#include "ViewTree/TextMeasurer.h"

namespace lanternfold {

/// Used on one thread. A font that is not installed falls back to another that is, glyph by glyph.
class PangoTextMeasurer final : public TextMeasurer {
 public:
  PangoTextMeasurer();
  ~PangoTextMeasurer() override;
  PangoTextMeasurer(const PangoTextMeasurer&) = delete;
  PangoTextMeasurer& operator=(const PangoTextMeasurer&) = delete;

  [[nodiscard]] Size measure(std::string_view text, const Font& font) const override;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace lanternfold
