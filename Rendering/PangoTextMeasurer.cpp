#include "Rendering/PangoTextMeasurer.h"

#include "Rendering/TextLines.h"

namespace lanternfold {

Size PangoTextMeasurer::measure(std::string_view text, const Font& font) const {
  return {lines_.line(text, font).width, lines_.metrics(font).height};
}

}  // namespace lanternfold
