#include "Rendering/PngImage.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <png.h>
#include <span>

#include <cairo.h>

namespace lanternfold {
namespace {

/// A pixel as cairo has it, 0xAARRGGBB, with its colour no longer multiplied by alpha.
std::uint32_t straight(std::uint32_t pixel) {
  const std::uint32_t alpha = pixel >> 24U;
  if (alpha == 0 || alpha == 255) return pixel;
  const auto component = [&](unsigned shift) {
    const std::uint32_t value = (((pixel >> shift) & 0xFFU) * 255 + alpha / 2) / alpha;
    return (value > 255 ? 255U : value) << shift;
  };
  return (alpha << 24U) | component(16) | component(8) | component(0);
}

void makeStraight(cairo_surface_t* image) {
  cairo_surface_flush(image);
  unsigned char* const data = cairo_image_surface_get_data(image);
  const int stride = cairo_image_surface_get_stride(image);
  const auto width = static_cast<std::size_t>(cairo_image_surface_get_width(image));
  for (int row = 0; row < cairo_image_surface_get_height(image); ++row) {
    // Cairo keeps rows aligned for this.
    auto* const first = reinterpret_cast<std::uint32_t*>(data + std::ptrdiff_t{row} * stride);
    for (std::uint32_t& pixel : std::span(first, width)) pixel = straight(pixel);
  }
  cairo_surface_mark_dirty(image);
}

struct FileClose {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
struct BufferFree {
  void operator()(char* buffer) const { std::free(buffer); }
};

}  // namespace

std::expected<std::string, std::string> pngOf(cairo_surface_t* image) {
  makeStraight(image);
  png_image description{};
  description.version = PNG_IMAGE_VERSION;
  description.width = static_cast<png_uint_32>(cairo_image_surface_get_width(image));
  description.height = static_cast<png_uint_32>(cairo_image_surface_get_height(image));
  description.format =
      std::endian::native == std::endian::little ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;
  description.flags = PNG_IMAGE_FLAG_FAST;
  char* written = nullptr;
  std::size_t size = 0;
  std::unique_ptr<std::FILE, FileClose> file(::open_memstream(&written, &size));
  if (!file) return std::unexpected("there is no memory for it");
  const int done =
      png_image_write_to_stdio(&description, file.get(), 0, cairo_image_surface_get_data(image),
                               cairo_image_surface_get_stride(image), nullptr);
  file.reset();  // now `written` and `size` are those of the whole
  const std::unique_ptr<char, BufferFree> bytes(written);
  if (done == 0) return std::unexpected(std::string(description.message));
  return std::string(bytes.get(), size);
}

}  // namespace lanternfold
