#include <numbers>

#include <cairo.h>
#include <gtest/gtest.h>

#include "Rendering/CirclePainter.h"
#include "Tests/Rendering/PaintedPixels.h"

namespace lanternfold {
namespace {

constexpr Rgba white{1, 1, 1, 1};

PaintedPixels painted(const StrokeCircle& circle, double scale = 1) {
  CirclePainter painter;
  return PaintedPixels(60, 60, scale, [&](cairo_t* surface) {
    painter.paint(surface, DeviceGrid(surface), circle);
  });
}

double ringArea(double side, double lineWidth) {
  const double outer = side / 2;
  const double inner = outer - lineWidth;
  return std::numbers::pi * (outer * outer - inner * inner);
}

TEST(CirclePainter, StrokesInsideTheFrame) {
  for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
    const PaintedPixels pixels = painted({{{10, 10}, {42, 42}}, 2, white}, scale);
    const double expected = ringArea(42, 2) * scale * scale;
    EXPECT_NEAR(pixels.coverage(), expected, 0.03 * expected) << scale;
    const auto middle = static_cast<std::size_t>(31 * scale);
    const auto top = static_cast<std::size_t>(10 * scale);
    EXPECT_EQ(pixels.at(middle, top - 1), 0U) << scale;
    EXPECT_GT(pixels.at(middle, top) >> 24U, 200U) << scale;
  }
}

TEST(CirclePainter, TouchesTheFrameInTheMiddleOfItsShorterSide) {
  const PaintedPixels pixels = painted({{{0, 0}, {60, 30}}, 2, white});
  EXPECT_NEAR(pixels.coverage(), ringArea(30, 2), 5);
  EXPECT_EQ(pixels.at(10, 15), 0U);
  EXPECT_GT(pixels.at(15, 15) >> 24U, 200U);
}

TEST(CirclePainter, LooksTheSameWhereverItStandsAmongThePixels) {
  EXPECT_EQ(painted({{{10.4, 9.7}, {42, 42}}, 2, white}).pixels(),
            painted({{{10, 10}, {42, 42}}, 2, white}).pixels());
}

TEST(CirclePainter, TakesTheColourAndTheWidthOfEachCircle) {
  CirclePainter painter;
  const PaintedPixels pixels(60, 60, 1, [&](cairo_t* surface) {
    const DeviceGrid grid(surface);
    painter.paint(surface, grid, {{{0, 0}, {30, 30}}, 2, {1, 0, 0, 1}});
    painter.paint(surface, grid, {{{30, 0}, {30, 30}}, 2, {0, 0, 1, 1}});
    painter.paint(surface, grid, {{{0, 30}, {30, 30}}, 6, white});
  });
  EXPECT_EQ(pixels.at(15, 1), 0xFFFF0000U);
  EXPECT_EQ(pixels.at(45, 1), 0xFF0000FFU);
  EXPECT_EQ(pixels.at(15, 4), 0U);
  EXPECT_EQ(pixels.at(15, 34), 0xFFFFFFFFU);
}

TEST(CirclePainter, DrawsLargeOnesToo) {
  EXPECT_GT(painted({{{-250, 5}, {560, 560}}, 2, white}).coverage(), 30);
  EXPECT_EQ(painted({{{0, 0}, {4, 4}}, 9, white}).coverage(), 0);
}

}  // namespace
}  // namespace lanternfold
