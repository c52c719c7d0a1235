// Where a widget stands for which there is no room: above others, but aside of each of them, so
// that all can be seen and taken hold of. Pure geometry, in points.
//
// Used by: the rules of where widgets stand on a monitor.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "ViewTree/Geometry.h"

namespace lanternfold {

/// Points from one widget without room to the next; what is to be seen of each is as wide and high.
inline constexpr int cascadeStep = 24;

class WidgetCascade {
 public:
  /// `standing` are those on the monitor whose widgets stand in `area`, the lowest one first.
  WidgetCascade(std::span<const Rect> standing, const Rect& area);

  /// How many widgets nobody could take hold of if one more stood at `frame`, above the others. It
  /// counts as one when another one that is raised above it leaves nothing of it to be seen.
  [[nodiscard]] std::size_t hiddenWith(const Rect& frame) const;

  /// The first place where that is none, else one where it is fewest: step by step aside from
  /// `from` towards the sides that are farther away, and on from the opposite one at a side. Within
  /// the gap from the area's sides where there is room for that.
  [[nodiscard]] Point place(Size size, Point from) const;

 private:
  struct Standing {
    Rect frame;
    std::vector<Rect> corners;  ///< those that nothing covers
  };

  Rect area_;
  std::vector<Standing> standing_;
};

}  // namespace lanternfold
