#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "Rendering/TextPainter.h"
#include "Tests/Rendering/ChosenTypefaces.h"
#include "Tests/Rendering/PaintedPixels.h"

namespace lanternfold {
namespace {

constexpr Rgba white{1, 1, 1, 1};
const char* const rocket = "\U0001F680";

class TextPainterTest : public testing::Test {
 protected:
  PaintedPixels painted(std::string_view text, const Rgba& colour = white, double scale = 1,
                        Point baseline = {2, 14}, double size = 13) {
    return PaintedPixels(120, 20, scale, [&](cairo_t* surface) {
      painter_.paint(surface, DeviceGrid(surface), lines_.line(text, FontWeight::regular),
                     {baseline, size, colour});
    });
  }

  ChosenTypefaces typefaces_{manyFolders()};
  TextLines lines_{[](std::string_view line) { ADD_FAILURE() << line; }};
  TextPainter painter_;
};

TEST_F(TextPainterTest, PaintsEmojiInTheirOwnColours) {
  EXPECT_FALSE(painted("Home").hasColours());
  EXPECT_TRUE(painted(rocket).hasColours());
  EXPECT_TRUE(painted(std::string("Home ") + rocket).hasColours());
}

TEST_F(TextPainterTest, PaintsTheLettersBesideAnEmojiAsWithoutIt) {
  const PaintedPixels alone = painted("Home ");
  const PaintedPixels beside = painted(std::string("Home ") + rocket);
  const auto end = static_cast<std::size_t>(lines_.width("Home", {13})) + 3;
  double difference = 0;  // a letter at another quarter of a pixel
  for (std::size_t y = 0; y < 20; ++y) {
    for (std::size_t x = 0; x < end; ++x) {
      difference += std::abs((alone.at(x, y) >> 24U) / 255.0 - (beside.at(x, y) >> 24U) / 255.0);
    }
  }
  EXPECT_LT(difference, 0.02 * alone.coverage());
}

TEST_F(TextPainterTest, GivesEmojiTheTextsOpacity) {
  const double opaque = painted(rocket).coverage();
  EXPECT_NEAR(painted(rocket, {1, 1, 1, 0.5}).coverage(), opaque / 2, 0.02 * opaque);
}

TEST_F(TextPainterTest, StandsOnARowOfPixels) {
  EXPECT_EQ(painted("Home", white, 1, {2, 14}).pixels(),
            painted("Home", white, 1, {2, 14.4}).pixels());
}

// The image surface would place each letter at a whole pixel, and space words unevenly.
TEST_F(TextPainterTest, PlacesLettersByQuartersOfAPixel) {
  const PaintedPixels here = painted("i", white, 1, {2, 14});
  const PaintedPixels further = painted("i", white, 1, {2.25, 14});
  EXPECT_NE(here.pixels(), further.pixels());
  EXPECT_NEAR(here.coverage(), further.coverage(), 0.5);
}

TEST_F(TextPainterTest, CoversTheSameAreaAtEveryScale) {
  const double once = painted("192.168.0.1/24").coverage();
  for (const double scale : {1.5, 2.0, 3.0}) {
    EXPECT_NEAR(painted("192.168.0.1/24", white, scale).coverage() / (scale * scale), once,
                0.08 * once)
        << scale;
  }
}

TEST_F(TextPainterTest, PaintsWhatIsSeenOfAHugeText) {
  EXPECT_GT(painted("abc", white, 1, {-100, 200}, 400).coverage(), 100);
  EXPECT_GT(painted(std::string(8000, 'm'), white, 2, {-3000, 14}).coverage(), 100);
  EXPECT_EQ(painted("abc", white, 1, {500, 14}).coverage(), 0);
}

TEST_F(TextPainterTest, StandsInForATextWithABar) {
  const PaintedPixels pixels(
      40, 20, 1, [](cairo_t* surface) { paintLineStandIn(surface, 30, 10, {5, 15}, white); });
  EXPECT_NEAR(pixels.coverage(), 30 * 5 * 0.5, 2);
  EXPECT_EQ(pixels.at(5, 14) >> 24U, 0x80U);
  EXPECT_EQ(pixels.at(5, 15), 0U);
}

}  // namespace
}  // namespace lanternfold
