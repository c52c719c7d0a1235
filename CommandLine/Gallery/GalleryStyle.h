// The measures and colours of the gallery's sheet.
//
// Read by: the sheet. Rule: texts are easy to read on the whole of their wallpaper; a test measures
// the contrast.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ViewTree/Colour.h"

namespace lanternfold {

/// In points. A cell is a small widget; the gaps are those between widgets on the desktop, so that
/// a medium widget is two cells wide and a large one two cells high, its caption's strip included.
struct GalleryMeasures {
  static constexpr std::size_t columns = 4;
  static constexpr double cell = 170;
  static constexpr double columnGap = 24;
  static constexpr double rowGap = 42;  ///< holds the captions
  static constexpr double margin = 64;
  static constexpr double headingTop = 56;
  static constexpr double gridTop = 126;
  static constexpr double bottomMargin = 32;  ///< below the last captions
  static constexpr double captionGap = 9;     ///< between a card and its caption
  static constexpr int shadowLayers = 8;
  static constexpr double shadowLayerGrowth = 1.75;  ///< each way, of a layer over the one upon it
  static constexpr double shadowDrop = 6;
};

/// What one half of the sheet is painted in.
struct GalleryColours {
  ColourScheme scheme;
  Rgba wallpaperTop;
  Rgba wallpaperBottom;
  Rgba text;
  Rgba secondaryText;
  Rgba shadow;
  /// Of each of the shadow's layers, which lie one upon the other.
  double shadowLayerOpacity;
};

[[nodiscard]] const GalleryColours& lightGalleryColours();
[[nodiscard]] const GalleryColours& darkGalleryColours();

}  // namespace lanternfold
