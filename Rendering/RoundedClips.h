// The rounded corners around what is painted. On pixels a clip of any other form than a rectangle's
// makes every command dear, and nearly all of them stand clear of the corners: so the rectangle
// clips always, and the corners only those that reach them.
#pragma once

#include <functional>
#include <vector>

#include "Rendering/CairoHandles.h"
#include "ViewTree/Geometry.h"

namespace lanternfold {

struct RoundedClip {
  Rect frame;  ///< its edges stand between pixels
  double cornerRadius = 0;
  /// The side of the squares in which the corners are, at least the radius, and a whole number of
  /// pixels; the four have room beside each other, or it is 0.
  double cornerSide = 0;
};

/// That of `frame`, whose edges stand between pixels, of which `scale` make a point.
[[nodiscard]] RoundedClip makeRoundedClip(const Rect& frame, double cornerRadius, double scale);

/// Whether a part of `area` that is within the clip's frame is outside its corners.
[[nodiscard]] bool reachesCorner(const Rect& area, const RoundedClip& clip);

/// The clips within each other that are in force.
class RoundedClips {
 public:
  void push(const RoundedClip& clip) { clips_.push_back(clip); }
  void pop() { clips_.pop_back(); }

  /// Has what covers no more than `area` painted on `surface` within the corners: where it reaches
  /// them in several pieces, each with a clip of its own.
  void paint(cairo_t* surface, const Rect& area, const std::function<void()>& paint) const;

 private:
  std::vector<RoundedClip> clips_;
};

/// Adds a rectangle with rounded corners to the path; the radius is at most half a side.
void addRoundedRectangle(cairo_t* surface, const Rect& frame, double cornerRadius);

}  // namespace lanternfold
