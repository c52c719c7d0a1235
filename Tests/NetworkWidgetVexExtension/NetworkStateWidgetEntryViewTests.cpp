// Which sources the widgets of the network's state show, and in which order.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

BasicInterface wired(std::string name) {
  BasicInterface interface = sampleInterface(std::move(name));
  interface.displayName = "Port " + interface.name;
  return interface;
}

NetworkStateEntry entryWith(std::vector<BasicInterface> others) {
  NetworkStateEntry entry = stateEntry(placeholderState());
  entry.networkState.others = std::move(others);
  return entry;
}

/// The symbols and titles of the sources, in their order of drawing.
void addSources(const LaidOutView& view, std::vector<std::string>& sources) {
  const bool isSource = std::holds_alternative<AccessoryRowNode>(view.node);
  for (const char* title : {"Internet", "Wi-Fi", "Cellular", "Port en1", "Port en2", "Port en3"}) {
    if (isSource && view.accessibleDescription.starts_with(title + std::string(", "))) {
      sources.emplace_back(title);
    }
  }
  for (const LaidOutView& child : view.children) addSources(child, sources);
}

std::vector<std::string> shownBy(const NetworkStateEntry& entry, WidgetFamily family,
                                 NetworkSourceCategory categories = NetworkSourceCategory::all()) {
  const FakeStringTable strings;
  const MetricTextMeasurer measurer;
  std::vector<std::string> sources;
  addSources(
      layOut(NetworkStateWidgetEntryView{entry}.body(
                 {.strings = strings, .widgetFamily = family, .shownCategories = categories}),
             {1000, 1000}, {measurer, ""}),
      sources);
  return sources;
}

TEST(NetworkStateWidgetEntryView, ShowsTheInternetThenWifiThenTheInterfaces) {
  EXPECT_THAT(shownBy(entryWith({wired("en1"), wired("en2")}), WidgetFamily::medium),
              ElementsAre("Internet", "Wi-Fi", "Port en1", "Port en2"));
}

TEST(NetworkStateWidgetEntryView, ShowsACellularSourceAfterWifi) {
  NetworkStateEntry entry = stateEntry(cellularState());
  entry.networkState.others = {wired("en1")};
  EXPECT_THAT(shownBy(entry, WidgetFamily::medium),
              ElementsAre("Internet", "Wi-Fi", "Cellular", "Port en1"));
  entry.networkState.wlan.reset();
  EXPECT_THAT(shownBy(entry, WidgetFamily::small), ElementsAre("Internet", "Cellular"));
}

TEST(NetworkStateWidgetEntryView, AddsNoInterfaceToTwoSourcesInASmallWidget) {
  EXPECT_THAT(shownBy(entryWith({wired("en1")}), WidgetFamily::small),
              ElementsAre("Internet", "Wi-Fi"));
  NetworkStateEntry withoutWifi = entryWith({wired("en1"), wired("en2")});
  withoutWifi.networkState.wlan.reset();
  EXPECT_THAT(shownBy(withoutWifi, WidgetFamily::small), ElementsAre("Internet", "Port en1"));
}

TEST(NetworkStateWidgetEntryView, ListsInterfacesThatAreActiveWithAnIPv4Address) {
  BasicInterface inactive = wired("en1");
  inactive.active = false;
  BasicInterface withoutAddress = wired("en2");
  withoutAddress.IPv4.clear();
  EXPECT_THAT(shownBy(entryWith({inactive, withoutAddress, wired("en3")}), WidgetFamily::large),
              ElementsAre("Internet", "Wi-Fi", "Port en3"));
}

TEST(NetworkStateWidgetEntryView, ShowsTheCategoriesOfItsWidgetOnly) {
  const NetworkStateEntry entry = entryWith({wired("en1")});
  EXPECT_THAT(shownBy(entry, WidgetFamily::medium, NetworkSourceCategory::wlan()),
              ElementsAre("Wi-Fi"));
  EXPECT_THAT(shownBy(entry, WidgetFamily::medium, NetworkSourceCategory::internet()),
              ElementsAre("Internet"));
}

TEST(NetworkStateWidgetEntryView, SaysNoSourceOnAMachineWithoutWifi) {
  for (const CardState& card : cardStates()) {
    if (!card.name.starts_with("wlan") || !card.name.ends_with("_no_wifi")) continue;
    EXPECT_THAT(textDump(card.laidOut()), HasSubstr("\"No source\"")) << card.name;
  }
}

/// Every piece of text that is shown, in its order.
void addTexts(const LaidOutView& view, std::string& texts) {
  for (const ShownLine& line : view.shownLines) texts += line.text + ' ';
  for (const LaidOutView& child : view.children) addTexts(child, texts);
}

std::string textsOf(const std::string& card) {
  std::string texts;
  for (const CardState& state : cardStates()) {
    if (state.name == card) addTexts(state.laidOut(), texts);
  }
  return texts;
}

// The sentence was once cut after "location".
TEST(NetworkStateWidgetEntryView, SaysWholeThatTheNameIsWithheldAndWhatIsMissing) {
  for (const CardState& card : cardStates()) {
    if (!card.name.ends_with("_withheld")) continue;
    EXPECT_THAT(textsOf(card.name), HasSubstr("SSID Unvailable, location access needed"))
        << card.name;
  }
}

// The provider's name once stood on several lines, cut amid its words, in place of its addresses.
TEST(NetworkStateWidgetEntryView, ShortensALongProvidersNameAndKeepsTheRows) {
  for (const char* card : {"internet_small_long", "internet_medium_long"}) {
    const std::string texts = textsOf(card);
    EXPECT_THAT(texts, HasSubstr("Dorfnetz Bei")) << card;
    EXPECT_THAT(texts, HasSubstr("\u2026")) << card;
    EXPECT_THAT(texts, HasSubstr("203.0.113.212 (IT)")) << card;
    EXPECT_THAT(texts, HasSubstr("Connected via Ethernet")) << card;
  }
}

TEST(NetworkStateWidgetEntryView, IsNotTouchedByWhatItsCategoriesLeaveOut) {
  for (const StateWidget& widget : stateWidgets()) {
    for (const auto& [familyName, family] : widget.families) {
      const CardState placeholder =
          stateCard(widget, family, familyName, stateEntry(placeholderState()));
      for (const SampleState& state : sampleStates()) {
        if (!state.differing.isDisjoint(widget.categories)) continue;
        EXPECT_EQ(stateCard(widget, family, state.name, stateEntry(state.network)).laidOut(),
                  placeholder.laidOut())
            << widget.name << ' ' << familyName << ' ' << state.name;
      }
    }
  }
}

}  // namespace
}  // namespace lanternfold
