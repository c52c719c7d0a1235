// What the widgets look like: few pictures by the real renderer, with the pinned fonts, from fixed
// states.
#include <filesystem>
#include <map>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Bundle/NetworkWidgetBundle.h"
#include "NetworkWidgetVexExtension/Views/NetworkStateWidgetEntryView.h"
#include "Rendering/PictureRenderer.h"
#include "Tests/NetworkWidgetVexExtension/WidgetWorld.h"
#include "Tests/Pictures/GoldenPicture.h"

namespace lanternfold {
namespace {

constexpr const char* panoramic = "PanoramicNetworkStateWidget";

using Words = std::map<std::string, std::string, std::less<>>;

struct WidgetPicture {
  const char* name;  ///< of its file
  const char* kind;
  WidgetFamily family = WidgetFamily::medium;
  ColourScheme scheme = ColourScheme::light;
  LayoutDirection direction = LayoutDirection::leftToRight;
  Words words = {};  ///< of the user's language, by the English ones
  bool showsTimestamp = false;
  void (*change)(NetworkState&) = nullptr;  ///< to the sample's state
  double scale = 2;                         ///< pixels a point

  friend void PrintTo(const WidgetPicture& picture, std::ostream* stream) {
    *stream << picture.name;
  }
};

/// As a user of that language has it: words of the program, and names of his own.
const Words arabic = {{"Router", "الموجه"}, {"Security", "الأمان"}, {"Channel", "القناة"}};

void nameInArabic(NetworkState& state) {
  state.internet.isp = "اسم مزود الخدمة";
  state.wlan->currentNetwork->ssid = "الشبكة المنزلية";
  for (BasicInterface& other : state.others) other.displayName = "محول إيثرنت";
}

/// Colour glyphs, letters with marks and letters that run the other way, in one network's name.
void nameInManyScripts(NetworkState& state) { state.wlan->currentNetwork->ssid = "Café 🏔️☕ مقهى"; }

std::vector<WidgetPicture> widgetPictures() {
  using enum WidgetFamily;
  constexpr auto dark = ColourScheme::dark;
  return {{.name = "panoramic_large_light", .kind = panoramic, .family = large},
          {.name = "panoramic_large_dark", .kind = panoramic, .family = large, .scheme = dark},
          {.name = "panoramic_medium_light", .kind = panoramic},
          {.name = "panoramic_medium_mirrored",
           .kind = panoramic,
           .direction = LayoutDirection::rightToLeft,
           .words = arabic,
           .change = nameInArabic},
          {.name = "internet_small_dark",
           .kind = "InternetNetworkStateWidget",
           .family = small,
           .scheme = dark},
          {.name = "wifi_medium_light", .kind = "WlanNetworkStateWidget"},
          {.name = "wifi_small_complex_name",
           .kind = "WlanNetworkStateWidget",
           .family = small,
           .change = nameInManyScripts},
          {.name = "adapter_medium_dark",
           .kind = "NetworkAdapterWidget",
           .scheme = dark,
           .showsTimestamp = true},
          {.name = "bandwidth_small_light", .kind = "BandwidthMonitorWidget", .family = small},
          {.name = "internet_small_light_1x",
           .kind = "InternetNetworkStateWidget",
           .family = small,
           .scale = 1},
          {.name = "panoramic_large_dark_1x",
           .kind = panoramic,
           .family = large,
           .scheme = dark,
           .scale = 1},
          {.name = "wifi_small_dark_3x",
           .kind = "WlanNetworkStateWidget",
           .family = small,
           .scheme = dark,
           .scale = 3},
          {.name = "panoramic_large_light_3x", .kind = panoramic, .family = large, .scale = 3}};
}

View sampleOf(const WidgetPicture& picture) {
  WidgetWorld world;
  const std::vector<Widget> widgets = NetworkWidgetBundle(world.surroundings()).body();
  const auto widget = std::ranges::find_if(
      widgets, [&](const Widget& each) { return each.description.kind == picture.kind; });
  WidgetRequest request{.family = picture.family, .configuration = {}, .context = {}};
  request.configuration.showTimestamp = picture.showsTimestamp;
  View view;
  widget->snapshot(request, [&view](const ViewEntry& entry) { view = entry.view; });
  return view;
}

View changedSampleOf(const WidgetPicture& picture) {
  const FakeStringTable strings(picture.words);
  NetworkStateEntry entry{.date = {},
                          .networkState = NetworkState::placeholder(true, strings),
                          .configuration = {},
                          .isSnapshot = true};
  picture.change(entry.networkState);
  const bool isPanoramic = picture.kind == std::string_view(panoramic);
  return NetworkStateWidgetEntryView{entry}.body(
      {.strings = strings,
       .widgetFamily = picture.family,
       .shownCategories =
           isPanoramic ? NetworkSourceCategory::all() : NetworkSourceCategory::wlan()});
}

/// A PNG; nothing is drawn by a stand-in.
std::string drawn(const WidgetPicture& picture) {
  const auto png =
      renderPicture(picture.change == nullptr ? sampleOf(picture) : changedSampleOf(picture),
                    {.sizePoints = widgetSize(picture.family),
                     .cornerRadiusPoints = widgetCornerRadius,
                     .scheme = picture.scheme,
                     .direction = picture.direction,
                     .scale = picture.scale,
                     .drawingTime = "Today, 10:30"},
                    {.assetFolder = std::filesystem::path(LANTERNFOLD_SOURCE_DIR) / "Assets",
                     .report = [](std::string_view line) { ADD_FAILURE() << line; }});
  EXPECT_TRUE(png) << png.error();
  return png.value_or("");
}

class WidgetPictureGolden : public testing::TestWithParam<WidgetPicture> {};

TEST_P(WidgetPictureGolden, LooksAsBlessed) {
  expectGoldenPicture(GoldenPictures::ofThisTree(), GetParam().name, drawn(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Widgets, WidgetPictureGolden, testing::ValuesIn(widgetPictures()),
                         [](const auto& picture) { return picture.param.name; });

}  // namespace
}  // namespace lanternfold
