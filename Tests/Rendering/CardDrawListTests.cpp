// What is painted of the card in each colour scheme, and whether it can be read.
#include <filesystem>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "Rendering/ColourFile.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "Tests/Support/GoldenText.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

ColourPalette assetColours() {
  return readColours(std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets",
                     [](std::string_view line) { ADD_FAILURE() << line; });
}

std::string drawListOf(ColourScheme scheme) {
  const FakeStringTable strings;
  const MetricTextMeasurer measurer;
  const View view = NetworkAdapterWidgetEntryView{timestampEntry()}.body({strings});
  const LaidOutView card =
      layOut(view, widgetSize(WidgetFamily::medium), {measurer, "Today, 10:30"});
  const auto report = [](std::string_view line) { ADD_FAILURE() << line; };
  const ColourPalette colours = assetColours();
  return textDump(makeDrawList(card, {colours, scheme, report}));
}

std::filesystem::path golden(const char* name) {
  return std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Tests/Rendering/Golden" / name;
}

TEST(CardDrawList, OfTheLightSchemeIsAsBlessed) {
  expectGolden(golden("card-light.txt"), drawListOf(ColourScheme::light));
}

TEST(CardDrawList, OfTheDarkSchemeIsAsBlessed) {
  expectGolden(golden("card-dark.txt"), drawListOf(ColourScheme::dark));
}

class AssetColours : public testing::TestWithParam<ColourScheme> {
 protected:
  static Rgba colour(const char* name) {
    return resolveColour(Colour::named(name), assetColours(), GetParam()).value();
  }
};

// 4.5 is what the accessibility guidelines ask of small text.
TEST_P(AssetColours, KeepTextReadableOnTheWholeGradient) {
  for (const char* background : {gradientStartColour, gradientEndColour}) {
    EXPECT_GE(contrastRatio(colour(foregroundColour), colour(background)), 4.5) << background;
    const Rgba label = blended({1, 1, 1, 0.4}, colour(background));
    EXPECT_GE(contrastRatio(colour(labelColour), label), 4.5) << background;
  }
}

INSTANTIATE_TEST_SUITE_P(Schemes, AssetColours,
                         testing::Values(ColourScheme::light, ColourScheme::dark));

}  // namespace
}  // namespace lanternfold
