#include <numeric>

#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include "Rendering/GlyphCoverages.h"
#include "Rendering/TextLines.h"
#include "Tests/Rendering/ChosenTypefaces.h"

namespace lanternfold {
namespace {

double sumOf(const GlyphCoverage& coverage) {
  return std::accumulate(coverage.pixels.begin(), coverage.pixels.end(), 0.0) / 255;
}

/// How far right of its place the middle of what a glyph covers is.
double middleOf(const GlyphCoverage& coverage) {
  double moment = 0;
  for (int y = 0; y < coverage.height; ++y) {
    for (int x = 0; x < coverage.width; ++x) {
      const auto index = static_cast<std::size_t>(y * coverage.width + x);
      moment += (coverage.left + x + 0.5) * coverage.pixels[index] / 255;
    }
  }
  return moment / sumOf(coverage);
}

class GlyphCoveragesTest : public testing::Test {
 protected:
  const GlyphCoverage* first(std::string_view text, double fontPixels, int place = 0) {
    const TextLine& line = lines_.line(text, FontWeight::regular);
    const auto& part = *static_cast<const PangoGlyphItem*>(line.line()->runs->data);
    return glyphs_.glyph(part.item->analysis.font, part.glyphs->glyphs[0].glyph,
                         fontPixels / TextLine::layoutFontSize, place);
  }

  ChosenTypefaces typefaces_{manyFolders()};
  TextLines lines_{[](std::string_view line) { ADD_FAILURE() << line; }};
  GlyphCoverages glyphs_;
};

TEST_F(GlyphCoveragesTest, CoverAsMuchAtEveryPlace) {
  for (const std::string_view letter : {"i", "W", "8", "."}) {
    const double here = sumOf(*first(letter, 20));
    EXPECT_GT(here, 2) << letter;
    for (const int place : {1, 2, 3}) {
      EXPECT_NEAR(sumOf(*first(letter, 20, place)), here, 0.03 * here) << letter << place;
    }
  }
}

TEST_F(GlyphCoveragesTest, StandAQuarterOfAPixelFurtherAtEachPlace) {
  const double here = middleOf(*first("o", 20));
  for (const int place : {1, 2, 3}) {
    EXPECT_NEAR(middleOf(*first("o", 20, place)) - here, place / 4.0, 0.02) << place;
  }
}

TEST_F(GlyphCoveragesTest, AreNeverCutOffAtTheirEdges) {
  for (const std::string_view letter : {"j", "W", "Q", "\u00C5", "\u0E17"}) {
    for (const double size : {5.0, 13.0, 26.0, 70.0}) {
      const GlyphCoverage& glyph = *first(letter, size);
      for (int x = 0; x < glyph.width; ++x) {
        EXPECT_LT(glyph.pixels[static_cast<std::size_t>(x)], 64) << letter << size;
        EXPECT_LT(glyph.pixels[static_cast<std::size_t>((glyph.height - 1) * glyph.width + x)], 64)
            << letter << size;
      }
    }
  }
}

TEST_F(GlyphCoveragesTest, OfASpaceHaveNoPixels) {
  const GlyphCoverage* const space = first(" ", 20);
  ASSERT_NE(space, nullptr);
  EXPECT_TRUE(space->pixels.empty());
}

TEST_F(GlyphCoveragesTest, AreNotMadeOfLettersThatAreTooLarge) {
  EXPECT_NE(first("W", 90), nullptr);
  EXPECT_EQ(first("W", 300), nullptr);
  EXPECT_EQ(first("W", 1e6), nullptr);
}

TEST_F(GlyphCoveragesTest, AreTheSameWhenAskedForAgain) {
  const GlyphCoverage* const once = first("a", 20);
  EXPECT_EQ(first("a", 20), once);
}

}  // namespace
}  // namespace lanternfold
