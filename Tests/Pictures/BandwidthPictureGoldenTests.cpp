// What the bandwidth monitor looks like, on the background that its window paints.
#include <filesystem>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "Rendering/PictureRenderer.h"
#include "Tests/Pictures/GoldenPicture.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/WidgetHost/Bandwidth/BusyBandwidth.h"
#include "ViewTree/Elements.h"
#include "WidgetHost/Bandwidth/BandwidthMonitorView.h"

namespace lanternfold {
namespace {

struct BandwidthPicture {
  const char* name;  ///< of its file
  Size size = bandwidthMonitorSize;
  ColourScheme scheme = ColourScheme::light;
  LayoutDirection direction = LayoutDirection::leftToRight;
  double scale = 2;  ///< pixels a point

  friend void PrintTo(const BandwidthPicture& picture, std::ostream* stream) {
    *stream << picture.name;
  }
};

std::string drawn(const BandwidthPicture& picture) {
  const FakeStringTable strings;
  const BandwidthMonitorState state = busyBandwidth();
  View card = BandwidthMonitorView{state, strings}
                  .body(picture.size)
                  .background(linearGradient(Colour::named(gradientStartColour),
                                             Colour::named(gradientEndColour)));
  const auto png =
      renderPicture(card,
                    {.sizePoints = picture.size,
                     .scheme = picture.scheme,
                     .direction = picture.direction,
                     .scale = picture.scale},
                    {.assetFolder = std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets",
                     .report = [](std::string_view line) { ADD_FAILURE() << line; }});
  EXPECT_TRUE(png) << png.error();
  return png.value_or("");
}

class BandwidthPictureGolden : public testing::TestWithParam<BandwidthPicture> {};

TEST_P(BandwidthPictureGolden, LooksAsBlessed) {
  expectGoldenPicture(GoldenPictures::ofThisTree(), GetParam().name, drawn(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Monitors, BandwidthPictureGolden,
                         testing::Values(BandwidthPicture{.name = "bandwidth_monitor_light"},
                                         BandwidthPicture{.name = "bandwidth_monitor_mini_dark_1x",
                                                          .size = bandwidthMonitorMiniSize,
                                                          .scheme = ColourScheme::dark,
                                                          .scale = 1},
                                         BandwidthPicture{
                                             .name = "bandwidth_monitor_mirrored",
                                             .direction = LayoutDirection::rightToLeft}),
                         [](const auto& picture) { return picture.param.name; });

}  // namespace
}  // namespace lanternfold
