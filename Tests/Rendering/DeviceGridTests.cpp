// Points among pixels: what is moved between them, and what is left where it is.
#include <cmath>
#include <string>

#include <cairo-svg.h>
#include <cairo.h>
#include <gtest/gtest.h>

#include "Rendering/DeviceGrid.h"

namespace lanternfold {
namespace {

struct Image {
  CairoSurface surface{cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 300, 200)};
  CairoContext context{cairo_create(surface.get())};
};

bool isWhole(double pixels) { return std::abs(pixels - std::round(pixels)) < 1e-9; }

class DeviceGridAtScale : public testing::TestWithParam<double> {};

TEST_P(DeviceGridAtScale, PutsEveryEdgeBetweenPixelsAndMovesItByLessThanOne) {
  const Image image;
  cairo_scale(image.context.get(), GetParam(), GetParam());
  cairo_translate(image.context.get(), 0.3, 0.7);
  const DeviceGrid grid(image.context.get());
  ASSERT_TRUE(grid.hasPixels());
  EXPECT_EQ(grid.scale(), GetParam());
  for (const Rect& frame : {Rect{{0, 0}, {18, 18}}, Rect{{16.25, 33.4}, {10.1, 13.6}},
                            Rect{{-3.3, 7.77}, {0.2, 99.9}}}) {
    const Rect before = grid.toPixels(frame);
    const Rect after = grid.toPixels(grid.aligned(frame));
    for (const double edge : {after.left(), after.top(), after.right(), after.bottom()}) {
      EXPECT_TRUE(isWhole(edge)) << edge;
    }
    EXPECT_LE(std::abs(after.left() - before.left()), 0.5);
    EXPECT_LE(std::abs(after.top() - before.top()), 0.5);
    EXPECT_LT(std::abs(after.size.width - before.size.width), 1);
    EXPECT_LT(std::abs(after.size.height - before.size.height), 1);
  }
}

TEST_P(DeviceGridAtScale, KeepsThingsOfOneSizeOfOneSize) {
  const Image image;
  cairo_scale(image.context.get(), GetParam(), GetParam());
  const DeviceGrid grid(image.context.get());
  const Size first = grid.aligned({{0, 0}, {13.6, 13.6}}).size;
  for (int step = 1; step < 40; ++step) {
    EXPECT_EQ(grid.alignedPixels({{step * 0.37, step * 0.91}, {13.6, 13.6}}).size,
              grid.alignedPixels({{0, 0}, {13.6, 13.6}}).size);
  }
  EXPECT_GT(first.width, 0);
}

INSTANTIATE_TEST_SUITE_P(Scales, DeviceGridAtScale, testing::Values(0.5, 1, 1.5, 2, 3));

TEST(DeviceGrid, MovesNothingInAFileOfVectors) {
  const CairoSurface surface(cairo_svg_surface_create_for_stream(nullptr, nullptr, 100, 100));
  const CairoContext context(cairo_create(surface.get()));
  const DeviceGrid grid(context.get());
  const Rect frame{{0.3, 0.4}, {10.5, 11.6}};
  EXPECT_FALSE(grid.hasPixels());
  EXPECT_EQ(grid.aligned(frame), frame);
}

TEST(DeviceGrid, MovesNothingThatIsTurned) {
  const Image image;
  cairo_rotate(image.context.get(), 0.1);
  const Rect frame{{0.3, 0.4}, {10.5, 11.6}};
  EXPECT_EQ(DeviceGrid(image.context.get()).aligned(frame), frame);
}

TEST(DeviceGrid, CountsThePixelsOfADenseScreen) {
  const Image image;
  cairo_surface_set_device_scale(image.surface.get(), 2, 2);
  const CairoContext context(cairo_create(image.surface.get()));
  const DeviceGrid grid(context.get());
  EXPECT_EQ(grid.scale(), 2);
  EXPECT_EQ(grid.aligned({{0.25, 0.5}, {10, 10}}).origin, (Point{0.5, 0.5}));
}

}  // namespace
}  // namespace lanternfold
