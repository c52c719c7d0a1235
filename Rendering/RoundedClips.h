// The rounded corners around what is painted. On pixels a clip of any other form than a rectangle's
// makes every command dear. So the rectangle alone clips; what a corner showed before something
// reached it is kept, and put back outside the rounding when the clip ends.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "Rendering/BoundedCache.h"
#include "Rendering/CairoHandles.h"
#include "Rendering/DeviceGrid.h"
#include "ViewTree/Geometry.h"

namespace lanternfold {

/// In pixels of the target, the frame's edges between them.
struct RoundedClip {
  Rect frame;
  double cornerRadius = 0;  ///< at most half a side
};

/// That of `frame`, whose edges stand between pixels.
[[nodiscard]] RoundedClip makeRoundedClip(const Rect& frame, double cornerRadius);

/// Whether a part of `area` that is within the clip's frame is outside its corners.
[[nodiscard]] bool reachesCorner(const Rect& area, const RoundedClip& clip);

/// What stands outside the rounding of a corner, drawn once a radius. Used on one thread.
class CornerShapes {
 public:
  /// A larger radius, in pixels, is clipped by its path: its corners would take too much room.
  static constexpr double largestRadius = 256;

  /// Covers of a square, whose side is the radius rounded up, what is not inside.
  [[nodiscard]] cairo_surface_t* outside(double radius, bool isRight, bool isBottom);

 private:
  struct Key {
    double radius = 0;
    bool isRight = false;
    bool isBottom = false;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };

  static constexpr std::size_t shapesKept = 32;
  BoundedCache<Key, CairoSurface, KeyHash, std::equal_to<>> shapes_{shapesKept};
};

/// The clips within each other that are in force on a target with pixels.
class RoundedClips {
 public:
  explicit RoundedClips(CornerShapes& shapes) : shapes_(shapes) {}

  void begin(const RoundedClip& clip) { clips_.push_back({clip, {}}); }

  /// Keeps the corners that `area`, in pixels, reaches, before it is painted. Returns how many
  /// pixels that were.
  double keepCorners(cairo_t* surface, const DeviceGrid& grid, const Rect& area);

  /// Ends the innermost clip, and puts back what it kept.
  void end(cairo_t* surface, const DeviceGrid& grid);

 private:
  struct Clip {
    RoundedClip shape;
    /// Row by row; none when nothing reached a corner.
    std::vector<CairoSurface> corners;
  };

  CornerShapes& shapes_;
  std::vector<Clip> clips_;
};

/// Adds a rectangle with rounded corners to the path; the radius is at most half a side.
void addRoundedRectangle(cairo_t* surface, const Rect& frame, double cornerRadius);

}  // namespace lanternfold
