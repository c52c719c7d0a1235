// A picture as the eye takes it: planes of the CIE L*a*b* colour space.
//
// Made by: the comparison of pictures.
#pragma once

#include <cstddef>
#include <vector>

#include "Tests/Rendering/Picture.h"

namespace lanternfold {

struct Lab {
  double lightness = 0;  ///< 0 to 100
  double greenRed = 0;
  double blueYellow = 0;
};

/// sRGB to L*a*b* under daylight (D65); components 0 to 1.
[[nodiscard]] Lab labOf(double red, double green, double blue);

/// CIE76: the distance of two colours; 2.3 is just noticeable.
[[nodiscard]] double colourDistance(const Lab& one, const Lab& other);

struct LabPlanes {
  std::size_t width = 0;
  std::size_t height = 0;
  std::vector<Lab> pixels;  ///< row by row

  [[nodiscard]] const Lab& at(std::size_t x, std::size_t y) const { return pixels[y * width + x]; }
};

/// `picture` on a mid grey.
[[nodiscard]] LabPlanes labPlanesOf(const Picture& picture);

}  // namespace lanternfold
