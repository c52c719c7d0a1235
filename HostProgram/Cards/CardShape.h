// The part of a card's window that is card: all but what the rounded corners leave out.
#pragma once

#include <cairomm/region.h>

#include "ViewTree/Geometry.h"

namespace lanternfold {

/// In whole points: where nothing composes the windows, a point belongs to one or not.
[[nodiscard]] Cairo::RefPtr<Cairo::Region> cardShape(Size size, double cornerRadius);

}  // namespace lanternfold
