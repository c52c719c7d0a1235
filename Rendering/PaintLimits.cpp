#include "Rendering/PaintLimits.h"

#include <algorithm>
#include <cmath>

namespace lanternfold {

bool isDrawable(const Rect& frame) {
  return std::isfinite(frame.left()) && std::isfinite(frame.top()) &&
         std::isfinite(frame.size.width) && std::isfinite(frame.size.height) &&
         frame.size.width > 0 && frame.size.height > 0;
}

bool isNearOrigin(const Rect& frame, double farthest) {
  const auto isNear = [farthest](double edge) { return std::abs(edge) <= farthest; };
  return isNear(frame.left()) && isNear(frame.top()) && isNear(frame.right()) &&
         isNear(frame.bottom());
}

Rect nearOrigin(const Rect& frame, double farthest) {
  const auto near = [farthest](double edge) { return std::clamp(edge, -farthest, farthest); };
  const Point origin{near(frame.left()), near(frame.top())};
  return {origin, {near(frame.right()) - origin.x, near(frame.bottom()) - origin.y}};
}

bool PaintBudget::spend(double area) {
  left_ -= area;
  return left_ >= 0;
}

}  // namespace lanternfold
