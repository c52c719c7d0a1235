#include <cstdlib>

#include <cairo.h>
#include <gtest/gtest.h>

#include "Rendering/PngImage.h"
#include "Tests/Rendering/PaintedPixels.h"
#include "Tests/Rendering/Picture.h"

namespace lanternfold {
namespace {

void paintStripes(cairo_t* surface) {
  for (int x = 0; x < 64; ++x) {
    cairo_set_source_rgba(surface, x / 63.0, 1 - x / 63.0, 0.3, x / 63.0);
    cairo_rectangle(surface, x, 0, 1, 8);
    cairo_fill(surface);
  }
}

TEST(PngImage, HasTheColoursAndTheTransparencyOfTheImage) {
  const PaintedPixels drawn(64, 9, 1, paintStripes);
  const CairoSurface image(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 64, 9));
  const CairoContext context(cairo_create(image.get()));
  paintStripes(context.get());
  const auto png = pngOf(image.get());
  ASSERT_TRUE(png) << png.error();
  const Picture decoded = decodedPng(*png);
  ASSERT_EQ(decoded.width, 64U);
  ASSERT_EQ(decoded.height, 9U);
  for (std::size_t at = 0; at < decoded.pixels.size(); ++at) {
    for (const unsigned shift : {0U, 8U, 16U, 24U}) {
      const auto one = static_cast<int>((decoded.pixels[at] >> shift) & 0xFFU);
      const auto other = static_cast<int>((drawn.pixels()[at] >> shift) & 0xFFU);
      ASSERT_LE(std::abs(one - other), 1) << at << " " << shift;
    }
  }
}

}  // namespace
}  // namespace lanternfold
