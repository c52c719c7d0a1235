// What a press or a tap at a point of a picture would hit.
//
// Pure functions. Used by: whoever shows a laid-out view and hears of the pointer.
#pragma once

#include "ViewTree/Layout.h"

namespace lanternfold {

/// The button or link whose frame has `point` in it: of those above each other the one that is
/// drawn last, of those inside each other the innermost; null where there is none. What a clip cuts
/// off its content cannot be hit, corners included. A frame holds its left and top edges and not
/// its others, so that of two that meet only one is hit. The view outlives what is returned.
[[nodiscard]] const LaidOutView* interactiveViewAt(const LaidOutView& view, Point point);

}  // namespace lanternfold
