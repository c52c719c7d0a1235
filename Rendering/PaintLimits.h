// What a painter takes of a draw list that may be anybody's: pure rules.
#pragma once

#include <cstddef>

#include "ViewTree/Geometry.h"

namespace lanternfold {

/// Clips within each other; what stands in deeper ones is left out. No view is deeper.
inline constexpr std::size_t maximumClips = 64;
/// How often the area of a picture may be painted over, all commands together.
inline constexpr double maximumCoats = 64;
/// Further from the origin than this many pixels nothing can be seen, and cairo's numbers end.
inline constexpr double farthestPixel = 1e6;

/// Whether `frame` has a size and its numbers are numbers.
[[nodiscard]] bool isDrawable(const Rect& frame);

/// Whether all of `frame` is no further from the origin than `farthest`.
[[nodiscard]] bool isNearOrigin(const Rect& frame, double farthest);

/// `frame` with its edges no further from the origin than `farthest`.
[[nodiscard]] Rect nearOrigin(const Rect& frame, double farthest);

/// Adds up what is painted.
class PaintBudget {
 public:
  /// `area` is that of the picture, in the unit of what is spent.
  explicit PaintBudget(double area) : left_(area * maximumCoats) {}

  /// Whether there is still so much to spend, which it then is.
  [[nodiscard]] bool spend(double area);

 private:
  double left_;
};

}  // namespace lanternfold
