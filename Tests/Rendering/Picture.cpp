#include "Tests/Rendering/Picture.h"

#include <cstring>
#include <string_view>

#include <cairo/cairo.h>
#include <gtest/gtest.h>

namespace lanternfold {
namespace {

cairo_status_t readBytes(void* closure, unsigned char* data, unsigned int length) {
  auto& rest = *static_cast<std::string_view*>(closure);
  if (rest.size() < length) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(data, rest.data(), length);
  rest.remove_prefix(length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

Picture decodedPng(const std::string& png) {
  std::string_view rest = png;
  cairo_surface_t* surface = cairo_image_surface_create_from_png_stream(readBytes, &rest);
  EXPECT_EQ(cairo_surface_status(surface), CAIRO_STATUS_SUCCESS);
  Picture picture;
  if (cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS) {
    picture.width = static_cast<std::size_t>(cairo_image_surface_get_width(surface));
    picture.height = static_cast<std::size_t>(cairo_image_surface_get_height(surface));
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    picture.pixels.resize(picture.width * picture.height);
    for (std::size_t row = 0; row < picture.height; ++row) {
      std::memcpy(picture.pixels.data() + row * picture.width,
                  cairo_image_surface_get_data(surface) + row * stride, picture.width * 4);
    }
  }
  cairo_surface_destroy(surface);
  return picture;
}

}  // namespace lanternfold
