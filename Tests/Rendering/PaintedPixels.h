// What something paints on an empty image.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "Rendering/CairoHandles.h"

namespace lanternfold {

class PaintedPixels {
 public:
  /// An image of so many points, with `scale` pixels each.
  PaintedPixels(std::size_t width, std::size_t height, double scale,
                const std::function<void(cairo_t*)>& paint);

  [[nodiscard]] std::size_t width() const { return width_; }
  [[nodiscard]] std::size_t height() const { return pixels_.size() / width_; }
  /// 0xAARRGGBB, colour multiplied by alpha.
  [[nodiscard]] std::uint32_t at(std::size_t x, std::size_t y) const {
    return pixels_.at(y * width_ + x);
  }
  [[nodiscard]] const std::vector<std::uint32_t>& pixels() const { return pixels_; }
  /// How many pixels are covered, those in part by their part.
  [[nodiscard]] double coverage() const;
  /// Whether a pixel has a colour, other than a grey.
  [[nodiscard]] bool hasColours() const;

 private:
  std::size_t width_;
  std::vector<std::uint32_t> pixels_;
};

}  // namespace lanternfold
