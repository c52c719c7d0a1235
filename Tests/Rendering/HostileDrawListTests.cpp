// Lists that no view makes, or only a hostile one: the work is bounded, and the rest is drawn.
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <cairo.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Rendering/PaintLimits.h"
#include "Rendering/Painter.h"
#include "Tests/Rendering/ChosenTypefaces.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr Rgba red{1, 0, 0, 1};
constexpr Rgba blue{0, 0, 1, 1};
constexpr Rect whole{{0, 0}, {40, 30}};

class HostileDrawList : public testing::Test {
 protected:
  /// Paints the list and then a red point; fails unless that is seen and cairo still works.
  void paint(const DrawList& list) {
    const CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 80, 60));
    const CairoContext context(cairo_create(surface.get()));
    cairo_scale(context.get(), 2, 2);
    painter_.paint(list, context.get());
    painter_.paint({FillRoundedRectangle{{{10, 10}, {1, 1}}, 0, red}}, context.get());
    EXPECT_EQ(cairo_status(context.get()), CAIRO_STATUS_SUCCESS);
    cairo_surface_flush(surface.get());
    EXPECT_EQ(pixel(surface.get(), 20, 20), 0xFFFF0000U);
    corner_ = pixel(surface.get(), 0, 0);
  }

  static std::uint32_t pixel(cairo_surface_t* surface, int x, int y) {
    const unsigned char* const row =
        cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface);
    return reinterpret_cast<const std::uint32_t*>(row)[x];
  }

  /// A command of each kind in `frame`.
  static DrawList everyCommand(const Rect& frame) {
    return {BeginClip{frame, 3},
            FillLinearGradient{frame, red, blue},
            FillRoundedRectangle{frame, 3, blue},
            StrokeCircle{frame, 2, blue},
            DrawSymbol{frame, "wifi", blue, 0.5},
            DrawImage{frame, "LanternfoldLogo", 0.2},
            DrawText{frame, "abc \U0001F680", {13}, blue},
            EndClip{}};
  }

  ChosenTypefaces typefaces_{manyFolders()};
  std::vector<std::string> reports_;
  Painter painter_{std::string(LANTERNFOLD_SOURCE_DIR) + "/Assets",
                   [this](std::string_view line) { reports_.emplace_back(line); }};
  std::uint32_t corner_ = 0;
};

TEST_F(HostileDrawList, WithAFrameOfAnyNumbersIsDrawn) {
  constexpr double infinite = std::numeric_limits<double>::infinity();
  const std::vector<double> numbers{0,    -1,     1e-300,   1e5,       -1e5,
                                    1e18, -1e300, infinite, -infinite, std::nan("")};
  for (const double one : numbers) {
    for (const double other : numbers) {
      SCOPED_TRACE(testing::Message() << one << " and " << other);
      paint(everyCommand({{one, other}, {20, 20}}));
      paint(everyCommand({{0, 0}, {one, other}}));
      paint(everyCommand({{one, one}, {other, other}}));
    }
  }
}

// librsvg would leave a clip behind.
TEST_F(HostileDrawList, WithASymbolAsThinAsAHairIsDrawn) {
  paint({DrawSymbol{{{0, 0}, {1e-300, 1e5}}, "wifi", blue, 0.5}});
  paint({DrawSymbol{{{0, 0}, {1e5, 1e-300}}, "wifi", blue, 0.5}});
}

TEST_F(HostileDrawList, WithARectangleFarBeyondThePictureFillsIt) {
  for (const double far : {1e4, 1e6, 1e12}) {
    paint({FillRoundedRectangle{{{-far, -far}, {2 * far, 2 * far}}, 10, blue}});
    EXPECT_EQ(corner_, 0xFF0000FFU) << far;
  }
}

TEST_F(HostileDrawList, WithLineWidthsRadiiAndColoursOfAnyNumbersIsDrawn) {
  for (const double each : {-1.0, 0.0, 1e9, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
    paint({StrokeCircle{whole, each, blue}, FillRoundedRectangle{whole, each, blue},
           FillRoundedRectangle{whole, 2, {each, each, each, each}},
           FillLinearGradient{whole, {each, 0, 0, 1}, {0, each, 0, each}},
           DrawSymbol{whole, "wifi", {each, 0, 0, each}, each},
           DrawImage{whole, "LanternfoldLogo", each},
           DrawText{whole, "abc \U0001F680", {each}, {0, 0, 0, each}}, BeginClip{whole, each},
           EndClip{}});
  }
}

TEST_F(HostileDrawList, WithHugeTextIsDrawn) {
  for (const double size : {100.0, 1000.0, 10'000.0, 1e5}) {
    paint({DrawText{whole, "abc \U0001F680 \u7DB2", {size}, blue}});
  }
  paint({DrawText{whole, std::string(65536, 'm'), {13}, blue},
         DrawText{whole, std::string(65536, '\xFF'), {13}, blue}});
  std::string marks = "a";
  for (int count = 0; count < 5000; ++count) marks += "\u0301";
  paint({DrawText{whole, marks, {13}, blue}});
}

TEST_F(HostileDrawList, WithThousandsOfClipsWithinEachOtherIsDrawn) {
  DrawList list;
  for (int depth = 0; depth < 5000; ++depth) {
    list.emplace_back(BeginClip{whole, 8});
    list.emplace_back(FillRoundedRectangle{{{4, 4}, {1, 1}}, 0, blue});
  }
  for (int depth = 0; depth < 5000; ++depth) list.emplace_back(EndClip{});
  list.emplace_back(FillRoundedRectangle{{{0, 0}, {5, 5}}, 0, blue});
  paint(list);
  EXPECT_EQ(corner_, 0xFF0000FFU);
}

TEST_F(HostileDrawList, WithClipsThatAreNotPairedIsDrawn) {
  paint({EndClip{}, EndClip{}, BeginClip{{{2, 2}, {3, 3}}, 0}});
  paint({BeginClip{{{2, 2}, {std::nan(""), 3}}, 0}, BeginClip{whole, 0}});
}

TEST_F(HostileDrawList, ThatHidesBehindClipsLeftOutIsNotSeen) {
  DrawList list(maximumClips + 1, BeginClip{whole, 0});
  list.emplace_back(FillRoundedRectangle{whole, 0, blue});
  paint(list);
  EXPECT_EQ(corner_, 0U);
}

TEST_F(HostileDrawList, ThatCoversItselfTooOftenEndsEarlyAndSaysSo) {
  paint(DrawList(100'000, FillLinearGradient{whole, red, blue}));
  EXPECT_THAT(reports_, ElementsAre(HasSubstr("covers itself too often")));
}

TEST_F(HostileDrawList, OfManySmallThingsIsDrawnWhole) {
  DrawList list(10'000, FillRoundedRectangle{{{3, 3}, {2, 2}}, 0, blue});
  list.emplace_back(FillRoundedRectangle{{{0, 0}, {2, 2}}, 0, blue});
  paint(list);
  EXPECT_THAT(reports_, ElementsAre());
  EXPECT_EQ(corner_, 0xFF0000FFU);
}

TEST_F(HostileDrawList, WithManyNamesOfAssetsReadsFewOfThem) {
  DrawList list;
  for (int index = 0; index < 1000; ++index) {
    list.emplace_back(DrawSymbol{{{1, 1}, {1, 1}}, "no\nsuch" + std::to_string(index), blue, {}});
  }
  paint(list);
  EXPECT_EQ(reports_.size(), maximumAssets);
  EXPECT_THAT(reports_, testing::Each(testing::Not(HasSubstr("\n"))));
}

TEST(PaintLimits, ClampEdgesNotSizes) {
  EXPECT_EQ(nearOrigin({{-10, 2}, {13, 20}}, 5), (Rect{{-5, 2}, {8, 3}}));
  EXPECT_EQ(nearOrigin({{1, 2}, {3, 1}}, 5), (Rect{{1, 2}, {3, 1}}));
}

TEST(PaintLimits, KnowAFrameWhoseSumsAreRounded) {
  EXPECT_TRUE(isNearOrigin({{102.3, 45.2}, {95.4, 9.7}}, 1e6));
  EXPECT_TRUE(isNearOrigin({{0.1, 0.2}, {0.3, 0.7}}, 1e6));
  EXPECT_FALSE(isNearOrigin({{999'999, 0}, {2, 1}}, 1e6));
  EXPECT_FALSE(isNearOrigin({{0, -1e9}, {2, 1}}, 1e6));
}

TEST(PaintLimits, OfABudgetAreItsCoats) {
  PaintBudget budget(10);
  EXPECT_TRUE(budget.spend(10 * maximumCoats));
  EXPECT_FALSE(budget.spend(1));
}

}  // namespace
}  // namespace lanternfold
