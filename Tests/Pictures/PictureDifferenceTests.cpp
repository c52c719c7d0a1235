// What the comparison of pictures sees, and what it overlooks.
#include <cmath>

#include <gtest/gtest.h>

#include "Tests/Pictures/LabPlanes.h"
#include "Tests/Pictures/PaintedTexts.h"
#include "Tests/Pictures/PictureDifference.h"

namespace lanternfold {
namespace {

constexpr Rgba darkTop{0.149, 0.212, 0.310, 1};
constexpr Rgba darkBottom{0.094, 0.133, 0.212, 1};

std::vector<TextPainting> paintings() {
  std::vector<TextPainting> all;
  for (const double size : {11.0, 16.0, 22.0}) {
    all.push_back({.size = size});
    all.push_back({.size = size, .top = darkTop, .bottom = darkBottom});
  }
  return all;
}

bool looksTheSame(const TextPainting& blessed, const TextPainting& actual) {
  return !describedDifference(painted(blessed), painted(actual));
}

Rgba changed(const Rgba& colour, double by) {
  return {std::min(colour.red + by, 1.0), std::min(colour.green + by, 1.0),
          std::min(colour.blue + by, 1.0), 1};
}

class PictureDifference : public testing::TestWithParam<TextPainting> {};

TEST_P(PictureDifference, SeesNoneInTheSamePicture) {
  EXPECT_TRUE(looksTheSame(GetParam(), GetParam()));
}

TEST_P(PictureDifference, OverlooksLettersThatAreSmoothedOtherwise) {
  TextPainting outlines = GetParam();
  outlines.asOutlines = true;
  EXPECT_NE(painted(GetParam()).pixels, painted(outlines).pixels);
  EXPECT_TRUE(looksTheSame(GetParam(), outlines));
}

TEST_P(PictureDifference, OverlooksAnEighthOfAPixel) {
  TextPainting aside = GetParam();
  aside.right = 0.125;
  EXPECT_NE(painted(GetParam()).pixels, painted(aside).pixels);
  EXPECT_TRUE(looksTheSame(GetParam(), aside));
}

TEST_P(PictureDifference, OverlooksColoursThatAreRoundedOtherwise) {
  TextPainting rounded = GetParam();
  rounded.top = changed(rounded.top, 1.0 / 255);
  EXPECT_TRUE(looksTheSame(GetParam(), rounded));
}

TEST_P(PictureDifference, SeesATextThatIsAPixelAside) {
  for (const double right : {-1.0, 1.0}) {
    TextPainting aside = GetParam();
    aside.right = right;
    EXPECT_FALSE(looksTheSame(GetParam(), aside)) << right;
  }
}

TEST_P(PictureDifference, SeesATextThatIsAPixelHigherOrLower) {
  for (const double down : {-1.0, 1.0}) {
    TextPainting moved = GetParam();
    moved.down = down;
    EXPECT_FALSE(looksTheSame(GetParam(), moved)) << down;
  }
}

TEST_P(PictureDifference, SeesAColourThatIsOffByFivePercent) {
  for (const double by : {-0.05, 0.05}) {
    TextPainting tinted = GetParam();
    tinted.top = changed(tinted.top, by);
    tinted.bottom = changed(tinted.bottom, by);
    EXPECT_FALSE(looksTheSame(GetParam(), tinted)) << by;
  }
}

TEST_P(PictureDifference, SeesARowThatIsMissing) {
  TextPainting without = GetParam();
  without.withoutLastRow = true;
  EXPECT_FALSE(looksTheSame(GetParam(), without));
}

TEST_P(PictureDifference, SeesCornersThatAreNoLongerTransparent) {
  TextPainting square = GetParam();
  square.cornerRadius = 0;
  EXPECT_FALSE(looksTheSame(GetParam(), square));
}

INSTANTIATE_TEST_SUITE_P(Paintings, PictureDifference, testing::ValuesIn(paintings()));

TEST_P(PictureDifference, SeesAShadeOfFivePercent) {
  TextPainting lighter = GetParam();
  for (Rgba* colour : {&lighter.top, &lighter.bottom}) {
    *colour = {colour->red * 1.05, colour->green * 1.05, colour->blue * 1.05, 1};
  }
  EXPECT_FALSE(looksTheSame(GetParam(), lighter));
}

TEST(PictureDifferenceSentence, TellsTheSizes) {
  const Picture small{.width = 2, .height = 3, .pixels = std::vector<std::uint32_t>(6)};
  const Picture wide{.width = 3, .height = 3, .pixels = std::vector<std::uint32_t>(9)};
  EXPECT_EQ(describedDifference(small, wide), "the size was 2 x 3 and is 3 x 3");
}

TEST(PictureDifferenceSentence, TellsWhereItIsWorst) {
  Picture blessed{.width = 64, .height = 64, .pixels = {}};
  blessed.pixels.resize(64 * 64, 0xFF2674C8U);
  Picture actual = blessed;
  for (std::size_t y = 40; y < 64; ++y) actual.pixels[y * 64 + 60] = 0xFFFFFFFFU;
  EXPECT_THAT(describedDifference(blessed, actual).value_or("none"),
              testing::AllOf(testing::StartsWith("1 of 9 windows differ; the worst colour by "),
                             testing::HasSubstr(" at 32,32 (at most ")));
}

TEST(PictureDifferenceSentence, PicturesOfAFewPixelsAreComparedToo) {
  const Picture blessed{.width = 1, .height = 1, .pixels = {0xFF000000U}};
  const Picture actual{.width = 1, .height = 1, .pixels = {0xFFFFFFFFU}};
  EXPECT_TRUE(describedDifference(blessed, actual));
  EXPECT_FALSE(describedDifference(blessed, blessed));
}

TEST(DifferencePicture, IsRedWhereTheWindowsDiffer) {
  Picture blessed{.width = 128, .height = 32, .pixels = {}};
  blessed.pixels.resize(128 * 32, 0xFFFFFFFFU);
  Picture actual = blessed;
  for (std::size_t y = 0; y < 32; ++y) actual.pixels[y * 128 + 120] = 0xFF000000U;
  const Picture difference = differencePicture(blessed, actual);
  EXPECT_EQ(difference.at(0, 0), 0xFFFFFFFFU);
  EXPECT_EQ(difference.at(127, 0), 0xFFEF8F94U);
}

TEST(DifferencePicture, OfTwoSizesIsRedWhereOnlyOneIs) {
  const Picture low{.width = 2, .height = 1, .pixels = {0xFF000000U, 0}};
  const Picture high{.width = 1, .height = 2, .pixels = {0xFF000000U, 0}};
  const Picture difference = differencePicture(low, high);
  EXPECT_EQ(std::pair(difference.width, difference.height), std::pair(2UL, 2UL));
  EXPECT_EQ(difference.pixels,
            (std::vector<std::uint32_t>{0xFFBFBFBFU, 0xFFE0202AU, 0xFFE0202AU, 0xFFE0202AU}));
}

// The values are those of the colour space's definition.
TEST(LabPlanes, TellKnownColours) {
  const auto near = [](const Lab& colour, double lightness, double greenRed, double blueYellow) {
    return colourDistance(colour, {lightness, greenRed, blueYellow}) < 0.1;
  };
  EXPECT_TRUE(near(labOf(1, 1, 1), 100, 0, 0));
  EXPECT_TRUE(near(labOf(0, 0, 0), 0, 0, 0));
  EXPECT_TRUE(near(labOf(1, 0, 0), 53.24, 80.09, 67.20));
  EXPECT_TRUE(near(labOf(0, 0, 1), 32.30, 79.19, -107.86));
}

TEST(LabPlanes, StandOnAMidGrey) {
  const Picture picture{.width = 2, .height = 1, .pixels = {0, 0x80808080U}};
  const LabPlanes planes = labPlanesOf(picture);
  EXPECT_LT(colourDistance(planes.at(0, 0), labOf(0.5, 0.5, 0.5)), 0.5);
  EXPECT_LT(colourDistance(planes.at(1, 0), labOf(0.75, 0.75, 0.75)), 0.5);
}

}  // namespace
}  // namespace lanternfold
