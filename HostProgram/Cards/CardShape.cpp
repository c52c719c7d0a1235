#include "HostProgram/Cards/CardShape.h"

#include <algorithm>
#include <cmath>

namespace lanternfold {

Cairo::RefPtr<Cairo::Region> cardShape(Size size, double cornerRadius) {
  const int width = static_cast<int>(size.width);
  const int height = static_cast<int>(size.height);
  const double radius = std::min({cornerRadius, size.width / 2, size.height / 2});
  const auto shape = Cairo::Region::create();
  for (int row = 0; row < height; ++row) {
    const double middle = row + 0.5;
    const double intoCorner = std::max({radius - middle, middle - (height - radius), 0.0});
    const double chord = std::sqrt(std::max(radius * radius - intoCorner * intoCorner, 0.0));
    const int inset = static_cast<int>(std::lround(radius - chord));
    shape->do_union({inset, row, width - 2 * inset, 1});
  }
  return shape;
}

}  // namespace lanternfold
