#include "Rendering/AssetColours.h"

#include <cstdint>

namespace lanternfold {
namespace {

/// The opaque colour 0xRRGGBB.
constexpr Rgba opaque(std::uint32_t hex) {
  const auto component = [hex](unsigned shift) { return ((hex >> shift) & 0xFFU) / 255.0; };
  return {component(16), component(8), component(0), 1};
}

}  // namespace

const ColourPalette& assetColours() {
  static const ColourPalette colours = {
      {"BackgroundGradientStart", {opaque(0x2674C8), opaque(0x26364F)}},
      {"BackgroundGradientEnd", {opaque(0x164C8C), opaque(0x182236)}},
      {"AccentColor", {opaque(0x0F766E), opaque(0x134E4A)}},
      {"Foreground", {opaque(0xFFFFFF), opaque(0xF2F5FA)}},
      {"LabelForeground", {opaque(0x081A33), opaque(0x050B16)}},
  };
  return colours;
}

}  // namespace lanternfold
