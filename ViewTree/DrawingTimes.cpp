#include "ViewTree/DrawingTimes.h"

#include <algorithm>
#include <variant>

namespace lanternfold {

bool hasDrawingTime(const View& view) {
  return std::holds_alternative<DrawingTimeNode>(view.node) ||
         std::ranges::any_of(view.children, hasDrawingTime);
}

}  // namespace lanternfold
