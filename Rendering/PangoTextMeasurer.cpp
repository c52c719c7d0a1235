#include "Rendering/PangoTextMeasurer.h"

#include "Rendering/TextLines.h"

namespace lanternfold {

Size PangoTextMeasurer::measure(std::string_view text, const Font& font) const {
  return {lines_.width(text, font), lines_.metrics(font).height};
}

double PangoTextMeasurer::baseline(const Font& font) const { return lines_.metrics(font).baseline; }

}  // namespace lanternfold
