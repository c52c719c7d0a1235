// Gradients from top to bottom, built once for each pair of colours and then stretched.
#pragma once

#include <cstddef>

#include "Rendering/BoundedCache.h"
#include "Rendering/CairoHandles.h"
#include "ViewTree/Colour.h"
#include "ViewTree/Geometry.h"

namespace lanternfold {

/// Used on one thread.
class Gradients {
 public:
  /// Fills `frame`, from its top to its bottom.
  void fill(cairo_t* surface, const Rect& frame, const Rgba& start, const Rgba& end);

 private:
  struct Key {
    Rgba start;
    Rgba end;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };

  static constexpr std::size_t patternsKept = 16;
  BoundedCache<Key, CairoPattern, KeyHash, std::equal_to<>> patterns_{patternsKept};
};

}  // namespace lanternfold
