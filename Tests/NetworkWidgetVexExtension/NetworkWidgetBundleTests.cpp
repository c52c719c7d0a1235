// The catalogue of the widgets, and each widget's way from a request to a view.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Bundle/AppGroupIdEnvironmentKey.h"
#include "NetworkWidgetVexExtension/Bundle/BandwidthMonitorWidget.h"
#include "NetworkWidgetVexExtension/Bundle/InternetNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Bundle/NetworkAdapterWidget.h"
#include "NetworkWidgetVexExtension/Bundle/NetworkWidgetBundle.h"
#include "NetworkWidgetVexExtension/Bundle/PanoramicNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Bundle/WlanNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "Tests/NetworkWidgetVexExtension/WidgetWorld.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;
using Timelines = std::vector<Timeline<ViewEntry>>;

constexpr WidgetFamily small = WidgetFamily::small;
constexpr WidgetFamily medium = WidgetFamily::medium;
constexpr WidgetFamily large = WidgetFamily::large;

NetworkPath pathOver(std::string name) {
  return {.status = PathStatus::satisfied, .availableInterfaces = {{.name = std::move(name)}}};
}

BasicInterface adapter(std::string name) {
  return {.active = true,
          .displayName = "Adapter " + name,
          .name = name,
          .type = InterfaceType::ethernet,
          .supportsIPv4 = true,
          .IPv4 = {{.address = "192.0.2.1", .cidr = "192.0.2.1/24"}}};
}

std::string wordsOf(const View& view) { return accessibleDescription(view, "now"); }

std::vector<std::string> kindsOfferedIn(WidgetFamily family, const std::vector<Widget>& widgets) {
  std::vector<std::string> kinds;
  for (const Widget& widget : widgets) {
    const auto& families = widget.description.supportedFamilies;
    if (std::ranges::find(families, family) != families.end()) {
      kinds.push_back(widget.description.kind);
    }
  }
  return kinds;
}

class NetworkWidgetBundleTest : public testing::Test, protected WidgetWorld {
 protected:
  NetworkWidgetBundleTest() {
    interfaces->machine = {adapter("en0"), adapter("en1")};
    wlan->answer =
        WlanInterface{.active = true, .displayName = "Wi-Fi", .interface = {.name = "en9"}};
    internet->immediateAnswers = {{.info = {.displayName = "Internet"}, .complete = true}};
  }

  [[nodiscard]] std::vector<Widget> widgets() { return NetworkWidgetBundle(surroundings()).body(); }
  /// Everything that was answered in two seconds.
  [[nodiscard]] Timelines timelinesOf(const Widget& widget, const WidgetRequest& request) {
    Timelines timelines;
    widget.timeline(request, [&timelines](Timeline<ViewEntry> timeline) {
      timelines.push_back(std::move(timeline));
    });
    dispatch.advance(2s);
    return timelines;
  }
  [[nodiscard]] std::string wordsOfTimeline(const Widget& widget, const WidgetRequest& request) {
    const Timelines timelines = timelinesOf(widget, request);
    if (timelines.size() != 1 || timelines[0].entries.size() != 1) return "not one entry";
    return wordsOf(timelines[0].entries[0].view);
  }
  [[nodiscard]] Widget adapterWidget() { return NetworkAdapterWidget{}.body(surroundings()); }
  [[nodiscard]] static WidgetRequest choosing(std::string identifier) {
    return {.family = medium,
            .configuration = {.showTimestamp = {},
                              .adapter = AdapterParameter{identifier, "An adapter"}},
            .context = {}};
  }
};

TEST_F(NetworkWidgetBundleTest, TheCatalogue) {
  const auto intent = ConfigurationKind::intentConfiguration;
  const std::vector<WidgetDescription> expected = {
      {.kind = "PanoramicNetworkStateWidget",
       .displayName = "Panoramic",
       .description = "Panoramic widget.",
       .supportedFamilies = {small, medium, large},
       .configuration = intent,
       .intent = "ConfigurationIntent"},
      {.kind = "InternetNetworkStateWidget",
       .displayName = "Internet",
       .description = "Internet widget.",
       .supportedFamilies = {small, medium},
       .configuration = intent,
       .intent = "ConfigurationIntent"},
      {.kind = "NetworkAdapterWidget",
       .displayName = "Network Adapter",
       .description = "Network adapter widget.",
       .supportedFamilies = {medium},
       .configuration = intent,
       .intent = "AdapterConfigurationIntent"},
      {.kind = "BandwidthMonitorWidget",
       .displayName = "Bandwidth Monitor",
       .description = "Bandwidth Monitor widget.",
       .supportedFamilies = {small},
       .configuration = ConfigurationKind::staticConfiguration,
       .intent = std::nullopt},
      {.kind = "WlanNetworkStateWidget",
       .displayName = "WiFi",
       .description = "WiFi widget.",
       .supportedFamilies = {small, medium},
       .configuration = intent,
       .intent = "ConfigurationIntent"}};
  const std::vector<Widget> all = widgets();
  ASSERT_EQ(all.size(), expected.size());
  for (std::size_t index = 0; index < expected.size(); ++index) {
    EXPECT_EQ(all[index].description, expected[index]) << expected[index].kind;
  }
}

TEST_F(NetworkWidgetBundleTest, EachWidgetHoldsItsKind) {
  EXPECT_EQ(PanoramicNetworkStateWidget{}.kind, "PanoramicNetworkStateWidget");
  EXPECT_EQ(InternetNetworkStateWidget{}.kind, "InternetNetworkStateWidget");
  EXPECT_EQ(NetworkAdapterWidget{}.kind, "NetworkAdapterWidget");
  EXPECT_EQ(BandwidthMonitorWidget{}.kind, "BandwidthMonitorWidget");
  EXPECT_EQ(WlanNetworkStateWidget{}.kind, "WlanNetworkStateWidget");
}

TEST_F(NetworkWidgetBundleTest, TheAdapterWidgetOffersOnlyTheMediumAndTheTileOnlyTheSmallFamily) {
  EXPECT_EQ(widgets()[2].description.supportedFamilies, std::vector{medium});
  EXPECT_EQ(widgets()[3].description.supportedFamilies, std::vector{small});
}

TEST_F(NetworkWidgetBundleTest, ThePanoramicWidgetIsTheOnlyOneInTheLargeFamily) {
  EXPECT_EQ(kindsOfferedIn(large, widgets()),
            std::vector<std::string>{"PanoramicNetworkStateWidget"});
}

TEST_F(NetworkWidgetBundleTest, TheGalleryFollowsTheOrderOfTheBundle) {
  EXPECT_EQ(kindsOfferedIn(small, widgets()),
            (std::vector<std::string>{"PanoramicNetworkStateWidget", "InternetNetworkStateWidget",
                                      "BandwidthMonitorWidget", "WlanNetworkStateWidget"}));
}

TEST_F(NetworkWidgetBundleTest, NamesAndDescriptionsAreInTheUsersLanguage) {
  strings.set("Panoramic", "Panoramico");
  strings.set("WiFi widget.", "Widget del WiFi.");
  mainBundleStrings.set("Network Adapter", "Scheda di rete");
  mainBundleStrings.set("Bandwidth Monitor widget.", "Widget della banda.");
  const std::vector<Widget> all = widgets();
  EXPECT_EQ(all[0].description.displayName, "Panoramico");
  EXPECT_EQ(all[2].description.displayName, "Scheda di rete");
  EXPECT_EQ(all[3].description.description, "Widget della banda.");
  EXPECT_EQ(all[4].description.description, "Widget del WiFi.");
}

TEST_F(NetworkWidgetBundleTest, TheApplicationGroupIsThatOfTheProductByDefault) {
  EXPECT_EQ(AppGroupIdEnvironmentKey::defaultValue(), "7RKM3PW2ZB.net.quernaple.LanternfoldX");
  EXPECT_EQ(EnvironmentValues{}.get<AppGroupIdEnvironmentKey>(),
            "7RKM3PW2ZB.net.quernaple.LanternfoldX");
}

TEST_F(NetworkWidgetBundleTest, WidgetsOfTheStateAskForTheGroupAndTheProvider) {
  for (const std::size_t index : {0U, 1U, 4U}) {
    asked.clear();
    (void)timelinesOf(widgets()[index], {.family = small});
    EXPECT_EQ(asked, (std::vector{Asked{"7RKM3PW2ZB.net.quernaple.LanternfoldX", false}})) << index;
  }
}

TEST_F(NetworkWidgetBundleTest, TheGroupIsThatOfTheSurroundings) {
  environment.set<AppGroupIdEnvironmentKey>("another.group");
  (void)timelinesOf(WlanNetworkStateWidget{}.body(surroundings()), {.family = small});
  EXPECT_EQ(asked, (std::vector{Asked{"another.group", false}}));
}

TEST_F(NetworkWidgetBundleTest, TheAdapterWidgetHasNoGroup) {
  (void)timelinesOf(adapterWidget(), {.family = medium});
  EXPECT_EQ(asked, (std::vector{Asked{std::nullopt, false}}));
}

TEST_F(NetworkWidgetBundleTest, TheTileMakesNoMonitor) {
  (void)timelinesOf(BandwidthMonitorWidget{}.body(surroundings()), {.family = small});
  EXPECT_TRUE(asked.empty());
}

TEST_F(NetworkWidgetBundleTest, OnlyWidgetsWithWifiTouchTheConsent) {
  const std::vector<Widget> all = widgets();
  for (const std::size_t index : {1U, 2U, 3U}) {
    (void)timelinesOf(all[index], {.family = all[index].description.supportedFamilies.front()});
  }
  EXPECT_EQ(consent.managersMade(), 0U);
  for (const std::size_t index : {0U, 4U}) (void)timelinesOf(all[index], {.family = small});
  EXPECT_EQ(consent.managersMade(), 2U) << "each widget has an observer of its own";
}

TEST_F(NetworkWidgetBundleTest, TheInternetWidgetShowsTheInternetOnly) {
  const Widget widget = InternetNetworkStateWidget{}.body(surroundings());
  EXPECT_THAT(
      wordsOfTimeline(widget, {.family = medium}),
      testing::AllOf(HasSubstr("Internet"), Not(HasSubstr("Wi-Fi")), Not(HasSubstr("Adapter"))));
  EXPECT_THAT(wordsOf(widget.placeholder({.family = medium}).view),
              testing::AllOf(HasSubstr("Internet"), Not(HasSubstr("Wi-Fi"))));
}

TEST_F(NetworkWidgetBundleTest, TheWifiWidgetShowsTheWifiOnly) {
  const Widget widget = WlanNetworkStateWidget{}.body(surroundings());
  EXPECT_THAT(
      wordsOfTimeline(widget, {.family = medium}),
      testing::AllOf(HasSubstr("Wi-Fi"), Not(HasSubstr("Internet")), Not(HasSubstr("Adapter"))));
  EXPECT_EQ(internet->resolutions(), 0U);
}

TEST_F(NetworkWidgetBundleTest, TheWifiWidgetOfAMachineWithoutWifiSaysNoSource) {
  wlan->answer = std::nullopt;
  EXPECT_THAT(wordsOfTimeline(WlanNetworkStateWidget{}.body(surroundings()), {.family = small}),
              HasSubstr("No source"));
}

TEST_F(NetworkWidgetBundleTest, ThePanoramicWidgetShowsAllThereIs) {
  EXPECT_THAT(
      wordsOfTimeline(PanoramicNetworkStateWidget{}.body(surroundings()), {.family = large}),
      testing::AllOf(HasSubstr("Internet"), HasSubstr("Wi-Fi"), HasSubstr("Adapter en0"),
                     HasSubstr("Adapter en1")));
}

TEST_F(NetworkWidgetBundleTest, AWidgetShowsTheTimeOfDrawingWhenItIsConfiguredTo) {
  const Widget widget = InternetNetworkStateWidget{}.body(surroundings());
  const WidgetRequest request{.family = small, .configuration = {.showTimestamp = true}};
  EXPECT_THAT(wordsOfTimeline(widget, request), HasSubstr("Last update now"));
  EXPECT_THAT(wordsOf(widget.placeholder(request).view), Not(HasSubstr("Last update")))
      << "a placeholder has an empty configuration";
  EXPECT_THAT(wordsOfTimeline(widget, {.family = small}), Not(HasSubstr("Last update")));
}

TEST_F(NetworkWidgetBundleTest, ASnapshotHasItsConfigurationAndCompletesAtOnce) {
  for (const std::size_t index : {0U, 1U, 2U, 4U}) {
    std::vector<ViewEntry> snapshots;
    const Widget widget = widgets()[index];
    widget.snapshot({.family = widget.description.supportedFamilies.back(),
                     .configuration = {.showTimestamp = true}},
                    [&](ViewEntry entry) { snapshots.push_back(std::move(entry)); });
    ASSERT_EQ(snapshots.size(), 1U) << index;
    EXPECT_EQ(snapshots[0].date, clock.now());
    EXPECT_THAT(wordsOf(snapshots[0].view), HasSubstr("Last update now")) << index;
  }
  EXPECT_TRUE(asked.empty());
}

TEST_F(NetworkWidgetBundleTest, ThePoliciesAreAtEndButNeverForTheTile) {
  for (const Widget& widget : widgets()) {
    const Timelines timelines =
        timelinesOf(widget, {.family = widget.description.supportedFamilies.front()});
    const std::string& kind = widget.description.kind;
    ASSERT_EQ(timelines.size(), 1U) << kind;
    EXPECT_EQ(timelines[0].policy, kind == "BandwidthMonitorWidget" ? TimelineReloadPolicy::never
                                                                    : TimelineReloadPolicy::atEnd)
        << kind;
    EXPECT_EQ(timelines[0].entries.size(), 1U) << kind;
  }
}

TEST_F(NetworkWidgetBundleTest, AStateThatNeverBecomesCompleteIsNeverAnswered) {
  internet->immediateAnswers.clear();
  EXPECT_TRUE(
      timelinesOf(InternetNetworkStateWidget{}.body(surroundings()), {.family = small}).empty());
}

TEST_F(NetworkWidgetBundleTest, OnlySystemsOfVersion14AndLaterHaveTheRefreshButton) {
  const auto words = [this](int version) {
    environment.set<PlatformVersionEnvironmentKey>(version);
    return wordsOf(
        WlanNetworkStateWidget{}.body(surroundings()).placeholder({.family = medium}).view);
  };
  EXPECT_THAT(words(13), Not(HasSubstr("Refresh")));
  EXPECT_THAT(words(14), HasSubstr("Refresh"));
  EXPECT_THAT(words(15), HasSubstr("Refresh"));
}

TEST_F(NetworkWidgetBundleTest, AnAutomaticChoiceIsTheAdapterOfTheBestDefaultRoute) {
  pathMonitors.deliver(pathOver("en1"));
  EXPECT_THAT(wordsOfTimeline(adapterWidget(), {.family = medium}), HasSubstr("Adapter en1"));
  pathMonitors.deliver(pathOver("en0"));
  EXPECT_THAT(wordsOfTimeline(adapterWidget(), {.family = medium}), HasSubstr("Adapter en0"));
}

TEST_F(NetworkWidgetBundleTest, AnAutomaticChoiceWithoutADefaultRouteIsTheFirst) {
  EXPECT_THAT(wordsOfTimeline(adapterWidget(), {.family = medium}), HasSubstr("Adapter en0"));
}

TEST_F(NetworkWidgetBundleTest, AutoIsAsNoAdapter) {
  pathMonitors.deliver(pathOver("en1"));
  EXPECT_THAT(wordsOfTimeline(adapterWidget(), choosing("auto")), HasSubstr("Adapter en1"));
}

TEST_F(NetworkWidgetBundleTest, AChosenAdapterIsShownWhateverCarriesTheRoute) {
  pathMonitors.deliver(pathOver("en1"));
  EXPECT_THAT(wordsOfTimeline(adapterWidget(), choosing("en0")), HasSubstr("Adapter en0"));
  EXPECT_TRUE(pathMonitors.monitors().empty()) << "nobody asks for the route";
}

TEST_F(NetworkWidgetBundleTest, AChosenAdapterThatHasGoneIsExplainedAndNeverReplaced) {
  pathMonitors.deliver(pathOver("en1"));
  EXPECT_THAT(wordsOfTimeline(adapterWidget(), choosing("en7")),
              testing::AllOf(HasSubstr("en7"), HasSubstr("It is gone, or cannot be read now."),
                             Not(HasSubstr("Adapter en"))));
}

TEST_F(NetworkWidgetBundleTest, TheRouteIsAskedForBesideTheMonitorAndNothingWaits) {
  pathMonitors.deliver(pathOver("en1"));
  Timelines timelines;
  adapterWidget().timeline({.family = medium}, [&timelines](Timeline<ViewEntry> timeline) {
    timelines.push_back(std::move(timeline));
  });
  EXPECT_EQ(interfaces->askedPrefixes, std::vector<std::string>{"en"}) << "at once";
  EXPECT_EQ(pathMonitors.monitors().size(), 1U);
  EXPECT_TRUE(timelines.empty()) << "the route is not known";
  dispatch.runReady();
  EXPECT_EQ(timelines.size(), 1U);
}

TEST_F(NetworkWidgetBundleTest, PlaceholdersAndSnapshotsAskForNoRoute) {
  const Widget widget = adapterWidget();
  (void)widget.placeholder({.family = medium});
  widget.snapshot({.family = medium}, [](const ViewEntry&) {});
  EXPECT_TRUE(pathMonitors.monitors().empty());
}

TEST_F(NetworkWidgetBundleTest, WidgetsOutliveTheirBundle) {
  Widget widget = WlanNetworkStateWidget{}.body(surroundings());
  const std::vector<Widget> all = NetworkWidgetBundle(surroundings()).body();
  EXPECT_EQ(timelinesOf(all[4], {.family = small}).size(), 1U);
  EXPECT_EQ(timelinesOf(widget, {.family = small}).size(), 1U);
}

}  // namespace
}  // namespace lanternfold
