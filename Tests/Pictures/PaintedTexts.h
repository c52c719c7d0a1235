// Pictures of texts on a widget's gradient, in ways that libraries differ in: what the comparison
// of pictures has to see, and what not.
#pragma once

#include <ostream>

#include "Tests/Rendering/Picture.h"
#include "ViewTree/Colour.h"

namespace lanternfold {

struct TextPainting {
  double size = 16;  ///< of the first line, in pixels; the others are larger
  double right = 0;  ///< how far the texts are moved, in pixels
  double down = 0;
  bool asOutlines = false;  ///< filled shapes instead of glyphs
  bool withoutLastRow = false;
  Rgba top = {0.149, 0.455, 0.784, 1};
  Rgba bottom = {0.086, 0.298, 0.549, 1};
  double cornerRadius = 22;

  friend void PrintTo(const TextPainting& painting, std::ostream* stream) {
    *stream << painting.size << " pixels on blue " << painting.top.blue;
  }
};

[[nodiscard]] Picture painted(const TextPainting& painting);

}  // namespace lanternfold
