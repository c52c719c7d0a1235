#include "CommandLine/Gallery/GalleryStyle.h"

namespace lanternfold {
namespace {

/// The opaque colour 0xRRGGBB.
constexpr Rgba opaque(std::uint32_t hex) {
  const auto component = [hex](unsigned shift) { return ((hex >> shift) & 0xFFU) / 255.0; };
  return {component(16), component(8), component(0), 1};
}

}  // namespace

const GalleryColours& lightGalleryColours() {
  static constexpr GalleryColours colours{.scheme = ColourScheme::light,
                                          .wallpaperTop = opaque(0xF6F8FB),
                                          .wallpaperBottom = opaque(0xDDE5EF),
                                          .text = opaque(0x162236),
                                          .secondaryText = opaque(0x3F4C61),
                                          .shadow = opaque(0x1B3050),
                                          .shadowLayerOpacity = 0.02};
  return colours;
}

const GalleryColours& darkGalleryColours() {
  static constexpr GalleryColours colours{.scheme = ColourScheme::dark,
                                          .wallpaperTop = opaque(0x171B23),
                                          .wallpaperBottom = opaque(0x0B0D12),
                                          .text = opaque(0xF2F5FA),
                                          .secondaryText = opaque(0x98A5B8),
                                          .shadow = opaque(0x000000),
                                          .shadowLayerOpacity = 0.05};
  return colours;
}

}  // namespace lanternfold
