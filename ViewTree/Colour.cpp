#include "ViewTree/Colour.h"

#include <algorithm>
#include <cmath>

namespace lanternfold {
namespace {

double linearised(double component) {
  return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const Rgba& colour) {
  return 0.2126 * linearised(colour.red) + 0.7152 * linearised(colour.green) +
         0.0722 * linearised(colour.blue);
}

}  // namespace

std::optional<Rgba> resolveColour(const Colour& colour, const ColourPalette& palette,
                                  ColourScheme scheme) {
  Rgba value;
  if (const std::string* name = std::get_if<std::string>(&colour.value)) {
    const auto pair = palette.find(*name);
    if (pair == palette.end()) return std::nullopt;
    value = scheme == ColourScheme::light ? pair->second.light : pair->second.dark;
  } else {
    value = std::get<Rgba>(colour.value);
  }
  value.alpha *= colour.opacity;
  return value;
}

double contrastRatio(const Rgba& one, const Rgba& other) {
  const double first = luminance(one) + 0.05;
  const double second = luminance(other) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

Rgba blended(const Rgba& over, const Rgba& under) {
  const auto mix = [&](double top, double bottom) {
    return top * over.alpha + bottom * (1 - over.alpha);
  };
  return {mix(over.red, under.red), mix(over.green, under.green), mix(over.blue, under.blue), 1};
}

}  // namespace lanternfold
