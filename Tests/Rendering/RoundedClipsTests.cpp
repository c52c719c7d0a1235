#include <cairo.h>
#include <gtest/gtest.h>

#include "Rendering/Painter.h"
#include "Rendering/RoundedClips.h"
#include "Tests/Rendering/PaintedPixels.h"

namespace lanternfold {
namespace {

const RoundedClip clip = makeRoundedClip({{10, 10}, {100, 50}}, 20);

bool reaches(double left, double top, double right, double bottom) {
  return reachesCorner({{left, top}, {right - left, bottom - top}}, clip);
}

TEST(RoundedClips, AreReachedByWhatStandsInACorner) {
  EXPECT_TRUE(reaches(10, 10, 20, 20));
  EXPECT_TRUE(reaches(100, 10, 110, 20));
  EXPECT_TRUE(reaches(10, 50, 20, 60));
  EXPECT_TRUE(reaches(100, 50, 110, 60));
  EXPECT_TRUE(reaches(10, 10, 110, 60));
  EXPECT_TRUE(reaches(-50, -50, 500, 500));
  EXPECT_TRUE(reaches(12, 12, 50, 40));
}

TEST(RoundedClips, AreNotReachedByWhatStandsClearOfTheCorners) {
  EXPECT_FALSE(reaches(30, 10, 90, 60));
  EXPECT_FALSE(reaches(10, 30, 110, 40));
  EXPECT_FALSE(reaches(16, 16, 104, 54));
  EXPECT_FALSE(reachesCorner({{10, 10}, {100, 50}}, {{{10, 10}, {100, 50}}, 0}));
  EXPECT_FALSE(reachesCorner({{10, 10}, {100, 50}}, makeRoundedClip({{10, 10}, {100, 50}}, -3)));
}

TEST(RoundedClips, CutEveryKindOfCommandAtTheCorners) {
  Painter painter(std::string(LANTERNFOLD_SOURCE_DIR) + "/Assets", {});
  constexpr Rgba white{1, 1, 1, 1};
  const DrawList commands{FillLinearGradient{{{0, 0}, {40, 40}}, white, white},
                          FillRoundedRectangle{{{0, 0}, {40, 40}}, 0, white},
                          StrokeCircle{{{-10, -10}, {60, 60}}, 30, white},
                          DrawImage{{{-30, -30}, {100, 100}}, "LanternfoldLogo", 1},
                          DrawText{{{0, 0}, {40, 40}}, "\u2588\u2588\u2588", {60}, white}};
  for (const DrawCommand& command : commands) {
    const PaintedPixels pixels(40, 40, 1, [&](cairo_t* surface) {
      painter.paint({BeginClip{{{0, 0}, {40, 40}}, 20}, command, EndClip{}}, surface);
    });
    EXPECT_EQ(pixels.at(2, 2) | pixels.at(37, 2) | pixels.at(2, 37) | pixels.at(37, 37), 0U)
        << command.index();
    EXPECT_NE(pixels.at(20, 20), 0U) << command.index();
  }
}

TEST(RoundedClips, LookLikeARoundedRectangle) {
  Painter painter("/nowhere", {});
  for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
    for (const double radius : {3.0, 7.3, 15.0, 20.0, 100.0}) {
      const Rect frame{{0, 0}, {40, 30}};
      const PaintedPixels clipped(40, 30, scale, [&](cairo_t* surface) {
        painter.paint({BeginClip{frame, radius},
                       FillLinearGradient{frame, {1, 1, 1, 0.5}, {1, 1, 1, 0.5}}, EndClip{}},
                      surface);
      });
      const PaintedPixels whole(40, 30, scale, [&](cairo_t* surface) {
        painter.paint({FillRoundedRectangle{frame, radius, {1, 1, 1, 0.5}}}, surface);
      });
      for (std::size_t y = 0; y < whole.height(); ++y) {
        for (std::size_t x = 0; x < whole.width(); ++x) {
          ASSERT_NEAR(clipped.at(x, y) >> 24U, whole.at(x, y) >> 24U, 6)
              << scale << " " << radius << ": " << x << " " << y;
        }
      }
    }
  }
}

TEST(RoundedClips, LeaveWhatWasThereOutsideTheirCorners) {
  Painter painter("/nowhere", {});
  constexpr Rgba red{1, 0, 0, 1};
  constexpr Rgba blue{0, 0, 1, 1};
  constexpr Rgba green{0, 1, 0, 1};
  const Rect frame{{5, 5}, {30, 30}};
  const PaintedPixels pixels(40, 40, 2, [&](cairo_t* surface) {
    painter.paint(
        {FillRoundedRectangle{{{0, 0}, {40, 40}}, 0, red}, BeginClip{frame, 10},
         FillRoundedRectangle{frame, 0, blue}, FillRoundedRectangle{frame, 0, green}, EndClip{}},
        surface);
  });
  constexpr std::uint32_t redPixel = 0xFFFF0000;
  constexpr std::uint32_t greenPixel = 0xFF00FF00;
  for (const std::size_t x : {10U, 11U, 68U, 69U}) {
    EXPECT_EQ(pixels.at(x, 10), redPixel) << x;
    EXPECT_EQ(pixels.at(x, 69), redPixel) << x;
    EXPECT_EQ(pixels.at(x, 40), greenPixel) << x;
    EXPECT_EQ(pixels.at(40, x), greenPixel) << x;
  }
  // The edge is a mean of what was there and the last coat: the one below it does not shine
  // through.
  for (std::size_t y = 0; y < 80; ++y) {
    for (std::size_t x = 0; x < 80; ++x) EXPECT_LE(pixels.at(x, y) & 0xFFU, 1U) << x << " " << y;
  }
}

TEST(RoundedClips, TooLargeToKeepTheirCornersAreClippedByThem) {
  Painter painter("/nowhere", {});
  const Rect frame{{0, 0}, {600, 600}};
  const PaintedPixels pixels(600, 600, 1, [&](cairo_t* surface) {
    painter.paint({BeginClip{frame, 300}, FillRoundedRectangle{frame, 0, {1, 1, 1, 1}}, EndClip{}},
                  surface);
  });
  EXPECT_EQ(pixels.at(80, 80), 0U);
  EXPECT_EQ(pixels.at(95, 95), 0xFFFFFFFFU);
}

TEST(RoundedClips, MayReachBeyondTheTarget) {
  Painter painter("/nowhere", {});
  const Rect frame{{-10, -10}, {60, 60}};
  const PaintedPixels pixels(40, 40, 1, [&](cairo_t* surface) {
    painter.paint({BeginClip{frame, 30}, FillRoundedRectangle{frame, 0, {1, 1, 1, 1}}, EndClip{}},
                  surface);
  });
  EXPECT_NEAR(pixels.coverage(), 40 * 40, 4 * 12);
  EXPECT_EQ(pixels.at(0, 20), 0xFFFFFFFFU);
}

TEST(RoundedClips, WithinEachOtherCutBoth) {
  Painter painter("/nowhere", {});
  const PaintedPixels pixels(40, 40, 1, [&](cairo_t* surface) {
    painter.paint({BeginClip{{{0, 0}, {40, 40}}, 10}, BeginClip{{{0, 0}, {20, 20}}, 10},
                   FillRoundedRectangle{{{0, 0}, {40, 40}}, 0, {1, 1, 1, 1}}, EndClip{},
                   FillRoundedRectangle{{{30, 30}, {10, 10}}, 0, {1, 1, 1, 1}}, EndClip{}},
                  surface);
  });
  EXPECT_EQ(pixels.at(0, 0) | pixels.at(19, 19) | pixels.at(25, 10) | pixels.at(39, 39), 0U);
  EXPECT_EQ(pixels.at(10, 10) & pixels.at(31, 31), 0xFFFFFFFFU);
}

}  // namespace
}  // namespace lanternfold
