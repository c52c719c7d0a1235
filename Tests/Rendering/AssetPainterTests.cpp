#include <fstream>
#include <string>
#include <vector>

#include <cairo.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Rendering/AssetPainter.h"
#include "Tests/Rendering/PaintedPixels.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr Rect frame{{1, 1}, {18, 18}};
const std::filesystem::path productAssets =
    std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets";

class AssetPainterTest : public testing::Test {
 protected:
  explicit AssetPainterTest(const std::filesystem::path& folder = productAssets)
      : painter_(folder, [this](std::string_view line) { reports_.emplace_back(line); }) {}

  template <typename Command>
  PaintedPixels painted(const Command& command, double scale = 1) {
    return PaintedPixels(20, 20, scale, [&](cairo_t* surface) {
      painter_.paint(surface, DeviceGrid(surface), command);
    });
  }

  PaintedPixels wifi(std::optional<double> strength, Rgba colour = {1, 1, 1, 1}) {
    return painted(DrawSymbol{frame, "wifi", colour, strength});
  }

  std::vector<std::string> reports_;
  AssetPainter painter_;
};

TEST_F(AssetPainterTest, LightsMoreBarsTheStrongerTheSignal) {
  double before = wifi(0.0).coverage();
  for (const double strength : {0.1, 0.4, 0.7, 1.0}) {
    const double coverage = wifi(strength).coverage();
    EXPECT_GT(coverage, before) << strength;
    before = coverage;
  }
  EXPECT_EQ(wifi(std::nullopt).coverage(), before);
}

TEST_F(AssetPainterTest, LightsABarAgainAfterAWeakerSignal) {
  const double before = wifi(std::nullopt).coverage();
  const double weak = wifi(0.1).coverage();
  EXPECT_LT(weak, before);
  AssetPainter other(productAssets, {});
  const PaintedPixels strong(20, 20, 1, [&](cairo_t* surface) {
    other.paint(surface, DeviceGrid(surface), DrawSymbol{frame, "wifi", {1, 1, 1, 1}, 0.1});
    cairo_set_operator(surface, CAIRO_OPERATOR_CLEAR);
    cairo_paint(surface);
    cairo_set_operator(surface, CAIRO_OPERATOR_OVER);
    other.paint(surface, DeviceGrid(surface), DrawSymbol{frame, "wifi", {1, 1, 1, 1}, 1.0});
  });
  EXPECT_EQ(strong.coverage(), before);
}

TEST_F(AssetPainterTest, TintsOneDrawingInAnyColour) {
  const PaintedPixels red = wifi(1.0, {1, 0, 0, 1});
  const PaintedPixels blue = wifi(1.0, {0, 0, 1, 0.5});
  EXPECT_EQ(red.at(10, 15), 0xFFFF0000U);
  EXPECT_EQ(blue.at(10, 15), 0x80000080U);
}

TEST_F(AssetPainterTest, DrawsTheSameWhereverItStandsAmongThePixels) {
  const PaintedPixels there = painted(DrawSymbol{{{1, 1}, {18, 18}}, "globe", {1, 1, 1, 1}, {}});
  const PaintedPixels beside =
      painted(DrawSymbol{{{1.3, 0.8}, {18, 18}}, "globe", {1, 1, 1, 1}, {}});
  EXPECT_EQ(there.pixels(), beside.pixels());
}

TEST_F(AssetPainterTest, StaysWithinItsFrame) {
  for (const char* name : {"globe", "wifi", "dot.radiowaves.left.and.right", "bolt.circle",
                           "arrow.triangle.2.circlepath", "Gauge", "LanternfoldLogo"}) {
    const PaintedPixels pixels = painted(DrawSymbol{frame, name, {1, 1, 1, 1}, {}}, 3);
    EXPECT_GT(pixels.coverage(), 0) << name;
    for (std::size_t at = 0; at < pixels.width(); ++at) {
      EXPECT_EQ(pixels.at(at, 1) | pixels.at(1, at) | pixels.at(at, 58) | pixels.at(58, at), 0U)
          << name;
    }
  }
  EXPECT_THAT(reports_, ElementsAre());
}

TEST_F(AssetPainterTest, GivesAPictureItsOpacity) {
  const double opaque = painted(DrawImage{frame, "LanternfoldLogo", 1}).coverage();
  const double faint = painted(DrawImage{frame, "LanternfoldLogo", 0.2}).coverage();
  EXPECT_NEAR(faint, 0.2 * opaque, 0.01 * opaque);
}

class BrokenAssets : public AssetPainterTest {
 protected:
  BrokenAssets() : AssetPainterTest(folder().path()) {}

  static TemporaryFolder& folder() {
    static TemporaryFolder made;
    return made;
  }

  double coverageOf(const char* name) {
    return painted(DrawSymbol{frame, name, {1, 1, 1, 1}, {}}).coverage();
  }
};

TEST_F(BrokenAssets, AreDrawnAsACrossedOutSquareAndToldOnce) {
  folder().write("broken.svg", "<svg");
  folder().write("large.svg", std::string(300'000, ' '));
  for (const char* name : {"broken", "large", "missing", "", "../Assets/globe"}) {
    EXPECT_GT(coverageOf(name), 10) << name;
    EXPECT_GT(coverageOf(name), 10) << name;
  }
  EXPECT_EQ(reports_.size(), 5U);
  EXPECT_THAT(reports_.front(), HasSubstr("cannot draw the picture"));
}

TEST_F(BrokenAssets, OfDeepNestingAreDrawnAsACrossedOutSquare) {
  std::string deep = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 9 9\">";
  for (int depth = 0; depth < 5000; ++depth) deep += "<g>";
  folder().write("deep.svg", deep);
  EXPECT_GT(coverageOf("deep"), 10);
}

}  // namespace
}  // namespace lanternfold
