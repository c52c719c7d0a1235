#include "Tests/Rendering/PaintedPixels.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <cairo.h>
#include <gtest/gtest.h>

namespace lanternfold {

PaintedPixels::PaintedPixels(std::size_t width, std::size_t height, double scale,
                             const std::function<void(cairo_t*)>& paint)
    : width_(static_cast<std::size_t>(std::lround(static_cast<double>(width) * scale))) {
  const long rows = std::lround(static_cast<double>(height) * scale);
  const CairoSurface image(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width_),
                                                      static_cast<int>(rows)));
  const CairoContext context(cairo_create(image.get()));
  cairo_scale(context.get(), scale, scale);
  paint(context.get());
  EXPECT_EQ(cairo_status(context.get()), CAIRO_STATUS_SUCCESS);
  cairo_surface_flush(image.get());
  pixels_.resize(width_ * static_cast<std::size_t>(rows));
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(image.get()));
  for (std::size_t row = 0; row < static_cast<std::size_t>(rows); ++row) {
    std::memcpy(pixels_.data() + row * width_,
                cairo_image_surface_get_data(image.get()) + row * stride, width_ * 4);
  }
}

double PaintedPixels::coverage() const {
  double sum = 0;
  for (const std::uint32_t pixel : pixels_) sum += (pixel >> 24U) / 255.0;
  return sum;
}

bool PaintedPixels::hasColours() const {
  return std::ranges::any_of(pixels_, [](std::uint32_t pixel) {
    const auto [least, most] =
        std::minmax({(pixel >> 16U) & 0xFFU, (pixel >> 8U) & 0xFFU, pixel & 0xFFU});
    return most - least > 32;
  });
}

}  // namespace lanternfold
