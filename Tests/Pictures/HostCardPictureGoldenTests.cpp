// What the host's own cards look like, by the real renderer with the pinned fonts.
#include <filesystem>

#include <gtest/gtest.h>

#include "NetworkMonitor/Model/NetworkState.h"
#include "NetworkWidgetVexExtension/Views/NetworkStateWidgetEntryView.h"
#include "Rendering/PictureRenderer.h"
#include "Tests/Pictures/GoldenPicture.h"
#include "Tests/Support/FakeStringTable.h"
#include "WidgetHost/Desk/HostCards.h"

namespace lanternfold {
namespace {

const FakeStringTable strings;

struct HostCardPicture {
  const char* name;  ///< of its file
  WidgetFamily family;
  ColourScheme scheme;
  View view;

  friend void PrintTo(const HostCardPicture& picture, std::ostream* stream) {
    *stream << picture.name;
  }
};

View staleWidget(WidgetFamily family) {
  const NetworkStateEntry entry{.date = {},
                                .networkState = NetworkState::placeholder(true, strings),
                                .configuration = {.showTimestamp = true},
                                .isSnapshot = true};
  return staleCard(NetworkStateWidgetEntryView{entry}.body(
                       {.strings = strings,
                        .widgetFamily = family,
                        .shownCategories = NetworkSourceCategory::internet()}),
                   strings);
}

std::vector<HostCardPicture> hostCardPictures() {
  using enum WidgetFamily;
  return {{"host_quiet_small_light", small, ColourScheme::light, quietCard(strings, small)},
          {"host_quiet_medium_dark", medium, ColourScheme::dark, quietCard(strings, medium)},
          {"host_stale_small_light", small, ColourScheme::light, staleWidget(small)},
          {"host_stale_medium_dark", medium, ColourScheme::dark, staleWidget(medium)}};
}

std::string drawn(const HostCardPicture& picture) {
  const auto png =
      renderPicture(picture.view,
                    {.sizePoints = widgetSize(picture.family),
                     .cornerRadiusPoints = widgetCornerRadius,
                     .scheme = picture.scheme,
                     .scale = 2,
                     .drawingTime = "Today, 10:30"},
                    {.assetFolder = std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets",
                     .report = [](std::string_view line) { ADD_FAILURE() << line; }});
  EXPECT_TRUE(png) << png.error();
  return png.value_or("");
}

class HostCardPictureGolden : public testing::TestWithParam<HostCardPicture> {};

TEST_P(HostCardPictureGolden, LooksAsBlessed) {
  expectGoldenPicture(GoldenPictures::ofThisTree(), GetParam().name, drawn(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Cards, HostCardPictureGolden, testing::ValuesIn(hostCardPictures()),
                         [](const auto& picture) { return std::string(picture.param.name); });

}  // namespace
}  // namespace lanternfold
