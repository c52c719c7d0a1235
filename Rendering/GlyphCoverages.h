// What the letters of texts cover of the pixels around them, drawn once a size and place. Cairo
// keeps letters too, but only at whole pixels and at more cost a letter than its pixels are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Rendering/BoundedCache.h"
#include "Rendering/CairoHandles.h"

namespace lanternfold {

/// A rectangle of pixels around the point where a letter stands, which is in the first pixel right
/// of and below the origin.
struct GlyphCoverage {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> pixels;  ///< row by row, 255 is all of a pixel
};

/// Used on one thread.
class GlyphCoverages {
 public:
  /// Places for a letter in a pixel's width. An image surface itself knows only whole pixels.
  static constexpr int places = 4;
  /// Larger ones, in pixels a side, are not drawn here.
  static constexpr int largestSide = 128;

  /// That of a glyph that stands so many of the `places` right of a pixel's left edge. `fontScale`
  /// is how many pixels a unit of `font` is. Null when it is too large. It stands until the next
  /// call.
  [[nodiscard]] const GlyphCoverage* glyph(PangoFont* font, std::uint32_t glyph, double fontScale,
                                           int place);

 private:
  struct Key {
    const PangoFont* font = nullptr;
    std::uint32_t glyph = 0;
    int place = 0;
    double fontScale = 1;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };
  struct Kept {
    FontHandle font;  // another one could get its address
    std::optional<GlyphCoverage> coverage;
  };

  [[nodiscard]] std::optional<GlyphCoverage> draw(PangoFont* font, const Key& key);
  void makeScratch();

  /// A few hundred bytes each.
  static constexpr std::size_t glyphsKept = 1024;
  BoundedCache<Key, Kept, KeyHash, std::equal_to<>> glyphs_{glyphsKept};
  CairoSurface wide_;  // `places` pixels for one of the target
  CairoContext scratch_;
};

}  // namespace lanternfold
