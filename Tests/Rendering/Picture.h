// A decoded PNG, for the few tests that look at pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lanternfold {

struct Picture {
  std::size_t width = 0;
  std::size_t height = 0;
  std::vector<std::uint32_t> pixels;  ///< 0xAARRGGBB, colour multiplied by alpha, row by row

  [[nodiscard]] std::uint32_t at(std::size_t x, std::size_t y) const {
    return pixels.at(y * width + x);
  }
};

/// Fails the running test and gives an empty picture when `png` is none.
[[nodiscard]] Picture decodedPng(const std::string& png);

}  // namespace lanternfold
