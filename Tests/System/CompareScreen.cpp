// usage: SystemTestCompareScreen SCREEN.png X Y CARD.png BACKGROUND
// Whether a card stands on a screen with its left top corner at X, Y, before a background of one
// colour (RRGGBB), by the measure of the golden pictures. Ends with 1 and a sentence when not.
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "Tests/Pictures/PictureDifference.h"
#include "Tests/Rendering/Picture.h"

namespace {

using lanternfold::Picture;

std::optional<std::uint32_t> number(std::string_view text, int base) {
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

Picture read(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return lanternfold::decodedPng({std::istreambuf_iterator<char>(file), {}});
}

std::uint32_t over(std::uint32_t pixel, std::uint32_t background) {
  const std::uint32_t clear = 0xFFU - (pixel >> 24U);
  std::uint32_t result = 0xFF000000U;
  for (const unsigned shift : {0U, 8U, 16U}) {
    const std::uint32_t behind = (((background >> shift) & 0xFFU) * clear + 127) / 255;
    result |= std::min(((pixel >> shift) & 0xFFU) + behind, 0xFFU) << shift;
  }
  return result;
}

void putBefore(Picture& card, std::uint32_t background) {
  for (std::uint32_t& pixel : card.pixels) pixel = over(pixel, background);
}

/// As large as `card`, or none when the screen ends before that.
std::optional<Picture> cutOut(const Picture& screen, std::size_t left, std::size_t top,
                              const Picture& card) {
  if (left + card.width > screen.width || top + card.height > screen.height) return std::nullopt;
  Picture part{.width = card.width, .height = card.height, .pixels = {}};
  for (std::size_t y = 0; y < card.height; ++y) {
    for (std::size_t x = 0; x < card.width; ++x) {
      part.pixels.push_back(0xFF000000U | screen.at(left + x, top + y));
    }
  }
  return part;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 6) return 2;
  const auto left = number(arguments[2], 10);
  const auto top = number(arguments[3], 10);
  const auto background = number(arguments[5], 16);
  Picture card = read(arguments[4]);
  const Picture screen = read(arguments[1]);
  if (!left || !top || !background || card.pixels.empty() || screen.pixels.empty()) return 2;
  putBefore(card, *background);
  const auto part = cutOut(screen, *left, *top, card);
  const auto difference = part ? lanternfold::describedDifference(card, *part)
                               : std::optional<std::string>("the screen ends before the card does");
  if (!difference) return 0;
  std::cout << *difference << '\n';
  return 1;
}
