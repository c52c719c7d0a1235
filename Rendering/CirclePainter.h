// Paints stroked circles. On pixels each size is drawn once and kept: stroking a circle anew takes
// as long as setting a text.
#pragma once

#include <cstddef>
#include <functional>

#include "Rendering/BoundedCache.h"
#include "Rendering/CairoHandles.h"
#include "Rendering/DeviceGrid.h"
#include "ViewTree/DrawList.h"

namespace lanternfold {

/// Used on one thread.
class CirclePainter {
 public:
  /// The stroke lies inside the largest circle of the frame, whose edges are moved between pixels.
  void paint(cairo_t* surface, const DeviceGrid& grid, const StrokeCircle& circle);

 private:
  /// In pixels.
  struct Key {
    double width = 0;
    double height = 0;
    double lineWidth = 0;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };

  /// The circle in a frame of that size.
  [[nodiscard]] cairo_surface_t* drawing(const Key& key);

  static constexpr std::size_t drawingsKept = 16;
  BoundedCache<Key, CairoSurface, KeyHash, std::equal_to<>> drawings_{drawingsKept};
};

}  // namespace lanternfold
