// The colours of the widgets, a light and a dark value each.
//
// Read by: the painter. Rule: white on the gradient and the label's text on the label's background
// are easy to read everywhere and in both schemes; a test measures the contrast.
#pragma once

#include "ViewTree/Colour.h"

namespace lanternfold {

[[nodiscard]] const ColourPalette& assetColours();

}  // namespace lanternfold
