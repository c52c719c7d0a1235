// The rounded corners around what is painted. On pixels a clip of any other form than a rectangle's
// makes every command dear, and nearly all of them stand clear of the corners: so the rectangle
// clips always, and the corners only those that reach them.
#pragma once

#include <vector>

#include "Rendering/CairoHandles.h"
#include "ViewTree/Geometry.h"

namespace lanternfold {

struct RoundedClip {
  Rect frame;
  double cornerRadius = 0;
};

/// Whether a part of `area` that is within the clip's frame is outside its corners.
[[nodiscard]] bool reachesCorner(const Rect& area, const RoundedClip& clip);

/// The clips within each other that are in force.
class RoundedClips {
 public:
  void push(const RoundedClip& clip) { clips_.push_back(clip); }
  void pop() { clips_.pop_back(); }

  /// Clips `surface` by the corners that `area` reaches; whether there are any, so that there is
  /// something to restore.
  [[nodiscard]] bool clip(cairo_t* surface, const Rect& area) const;

 private:
  std::vector<RoundedClip> clips_;
};

/// Adds a rectangle with rounded corners to the path; the radius is at most half a side.
void addRoundedRectangle(cairo_t* surface, const Rect& frame, double cornerRadius);

}  // namespace lanternfold
