#include "Tests/Pictures/LabPlanes.h"

#include <array>
#include <cmath>
#include <cstdint>

namespace lanternfold {
namespace {

/// The sRGB transfer function undone, for every byte.
std::array<double, 256> linearBytes() {
  std::array<double, 256> table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    const double value = static_cast<double>(byte) / 255;
    table[byte] = value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  }
  return table;
}

Lab labOfLinear(double red, double green, double blue) {
  const auto root = [](double ratio) {
    return ratio > 216.0 / 24389 ? std::cbrt(ratio) : (24389.0 / 27 * ratio + 16) / 116;
  };
  const double x = root((0.4124 * red + 0.3576 * green + 0.1805 * blue) / 0.95047);
  const double y = root(0.2126 * red + 0.7152 * green + 0.0722 * blue);
  const double z = root((0.0193 * red + 0.1192 * green + 0.9505 * blue) / 1.08883);
  return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

}  // namespace

Lab labOf(double red, double green, double blue) {
  static const std::array<double, 256> linear = linearBytes();
  const auto light = [](double value) {
    return linear[static_cast<std::size_t>(std::lround(value * 255))];
  };
  return labOfLinear(light(red), light(green), light(blue));
}

double colourDistance(const Lab& one, const Lab& other) {
  return std::hypot(one.lightness - other.lightness, one.greenRed - other.greenRed,
                    one.blueYellow - other.blueYellow);
}

LabPlanes labPlanesOf(const Picture& picture) {
  LabPlanes planes{.width = picture.width, .height = picture.height, .pixels = {}};
  planes.pixels.reserve(picture.pixels.size());
  // Neighbours are often equal, and the conversion is slow.
  std::uint32_t last = 0;
  Lab lab = labOf(0.5, 0.5, 0.5);
  for (const std::uint32_t pixel : picture.pixels) {
    if (pixel != last) {
      const double grey = (255 - (pixel >> 24U)) / 255.0 / 2;
      const auto component = [&](unsigned shift) {
        return std::min(((pixel >> shift) & 0xFFU) / 255.0 + grey, 1.0);
      };
      lab = labOf(component(16), component(8), component(0));
      last = pixel;
    }
    planes.pixels.push_back(lab);
  }
  return planes;
}

}  // namespace lanternfold
