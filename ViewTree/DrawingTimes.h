// Whether a view tells when it was drawn.
//
// Read by: who draws views, and who keeps them up to date.
#pragma once

#include "ViewTree/View.h"

namespace lanternfold {

/// Whether a text of the time stands anywhere in `view`. Pure.
[[nodiscard]] bool hasDrawingTime(const View& view);

}  // namespace lanternfold
