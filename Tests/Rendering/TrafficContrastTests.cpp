// Whether the bars of the bandwidth monitor can be told from what is behind them.
#include <filesystem>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "Rendering/ColourFile.h"
#include "WidgetHost/Bandwidth/BandwidthGraph.h"

namespace lanternfold {
namespace {

/// What the accessibility guidelines ask of graphics.
constexpr double distinguishable = 3;

void expectDistinguishable(const ColourPalette& palette) {
  for (const ColourScheme scheme : {ColourScheme::light, ColourScheme::dark}) {
    const auto colour = [&](const char* name) {
      return resolveColour(Colour::named(name), palette, scheme).value();
    };
    for (const char* bar : {receivedColour, sentColour}) {
      for (const char* end : {gradientStartColour, gradientEndColour}) {
        EXPECT_GE(contrastRatio(colour(bar), colour(end)), distinguishable)
            << bar << " on " << end << (scheme == ColourScheme::light ? ", light" : ", dark");
      }
    }
    EXPECT_NE(colour(receivedColour), colour(sentColour));
  }
}

TEST(TrafficContrast, BarsStandOutFromTheBackground) {
  expectDistinguishable(readColours(std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets",
                                    [](std::string_view line) { ADD_FAILURE() << line; }));
}

TEST(TrafficContrast, BarsInStandInColoursDoToo) { expectDistinguishable(standInColours()); }

}  // namespace
}  // namespace lanternfold
