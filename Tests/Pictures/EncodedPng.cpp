#include "Tests/Pictures/EncodedPng.h"

#include <cstring>

#include <cairo/cairo.h>
#include <gtest/gtest.h>

namespace lanternfold {

std::string encodedPng(const Picture& picture) {
  cairo_surface_t* surface = cairo_image_surface_create(
      CAIRO_FORMAT_ARGB32, static_cast<int>(picture.width), static_cast<int>(picture.height));
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
  for (std::size_t row = 0; row < picture.height; ++row) {
    std::memcpy(cairo_image_surface_get_data(surface) + row * stride,
                picture.pixels.data() + row * picture.width, picture.width * 4);
  }
  cairo_surface_mark_dirty(surface);
  std::string bytes;
  const auto append = [](void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
  };
  EXPECT_EQ(cairo_surface_write_to_png_stream(surface, append, &bytes), CAIRO_STATUS_SUCCESS);
  cairo_surface_destroy(surface);
  return bytes;
}

}  // namespace lanternfold
