// How large a PNG file says that its picture is.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace lanternfold {

/// The width and height in the header of a PNG file, in pixels.
inline std::pair<int, int> pngSize(const std::string& png) {
  const auto word = [&png](std::size_t position) {
    int value = 0;
    for (const char byte : png.substr(position, 4)) {
      value = value * 256 + static_cast<unsigned char>(byte);
    }
    return value;
  };
  return {word(16), word(20)};
}

}  // namespace lanternfold
