// How the place of the keyboard's focus is shown on a card.
#pragma once

#include <cairomm/context.h>

#include "ViewTree/Geometry.h"

namespace lanternfold {

/// Inside of `frame`, seen on bright and on dark grounds.
void drawFocusRing(const Cairo::RefPtr<Cairo::Context>& context, const Rect& frame,
                   double cornerRadius);

}  // namespace lanternfold
