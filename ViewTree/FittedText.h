// A text made to fit a width: the font shrunk as far as it may, then the text shortened.
#pragma once

#include <optional>
#include <string>

#include "ViewTree/View.h"

namespace lanternfold {

struct FittedText {
  std::string text;
  Font font;
  Size size;
};

/// `width` absent asks for the whole text in its own font. The height is always that of a line
/// of its own font, so that rows stay where they are when a text shrinks or loses its characters.
[[nodiscard]] FittedText fittedText(const TextNode& node, std::optional<double> width,
                                    const TextMeasurer& measurer);

}  // namespace lanternfold
