// What the menu of a card offers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/Menu/CardMenu.h"
#include "NetworkWidgetVexExtension/Views/AdapterChoice.h"
#include "Tests/Support/FakeStringTable.h"

namespace lanternfold {
namespace {

using Kind = CardMenuEntry::Kind;
using testing::HasSubstr;
using testing::Not;

const WidgetDescription panorama{.kind = "panorama",
                                 .displayName = "Network",
                                 .supportedFamilies = {WidgetFamily::medium, WidgetFamily::large},
                                 .configuration = ConfigurationKind::intentConfiguration,
                                 .intent = "ConfigurationIntent"};
const WidgetDescription adapterWidget{.kind = "adapter",
                                      .displayName = "Adapter",
                                      .supportedFamilies = {WidgetFamily::small},
                                      .configuration = ConfigurationKind::intentConfiguration,
                                      .intent = "AdapterConfigurationIntent"};
const WidgetDescription tile{
    .kind = "tile", .displayName = "Bandwidth", .supportedFamilies = {WidgetFamily::small}};
const std::vector<NetworkAdapter> adapters{
    {.identifier = automaticAdapterIdentifier, .display = "Automatic, now Ethernet (eth0)"},
    {.identifier = "eth0", .display = "Ethernet (eth0)"},
    {.identifier = "wlan0", .display = "Wi-Fi (wlan0)"}};

/// A line an entry: what is chosen with a star, children further in.
std::string textOf(const std::vector<CardMenuEntry>& entries, const std::string& indent = "") {
  std::string text;
  for (const CardMenuEntry& entry : entries) {
    const bool isLine = entry.kind == Kind::separator;
    text += indent + (isLine ? "--" : entry.label) + (entry.isChosen ? " *" : "") + '\n';
    text += textOf(entry.children, indent + "  ");
  }
  return text;
}

CardMenuFacts factsOf(const WidgetDescription& description) {
  return {.placed = {.id = "1",
                     .kind = description.kind,
                     .family = description.supportedFamilies.front()},
          .description = description,
          .adapters = adapters};
}

std::string menuText(const CardMenuFacts& facts) {
  return textOf(cardMenu(facts, FakeStringTable()));
}

/// The entry of that label, wherever it stands; stops the test without one.
CardMenuEntry entryOf(const std::vector<CardMenuEntry>& entries, std::string_view label) {
  for (const CardMenuEntry& entry : entries) {
    if (entry.label == label) return entry;
    for (const CardMenuEntry& child : entry.children) {
      if (child.label == label) return child;
    }
  }
  ADD_FAILURE() << "no entry " << label;
  return {};
}

TEST(CardMenuTest, AWidgetThatIsConfiguredHasItsSizesAndItsTime) {
  CardMenuFacts facts = factsOf(panorama);
  facts.placed.family = WidgetFamily::large;
  facts.placed.configuration.showTimestamp = true;
  EXPECT_EQ(menuText(facts),
            "Size\n  Medium\n  Large *\n"
            "Show time of update *\n"
            "--\nRefresh\nRemove\n"
            "--\nAdd widget…\n"
            "Wi-Fi names\n  Not decided *\n  Always show\n  Show while in use\n  Don't show\n"
            "--\nQuit\n");
}

TEST(CardMenuTest, AStaticWidgetOfOneSizeHasNothingToConfigure) {
  EXPECT_THAT(menuText(factsOf(tile)), testing::StartsWith("Refresh\nRemove\n--\n"));
}

TEST(CardMenuTest, WithoutAChoiceTheAdapterIsAutomatic) {
  EXPECT_THAT(menuText(factsOf(adapterWidget)),
              HasSubstr("Adapter\n  Automatic, now Ethernet (eth0) *\n  Ethernet (eth0)\n"
                        "  Wi-Fi (wlan0)\n"));
}

TEST(CardMenuTest, TheChosenAdapterIsMarkedAlsoWhenItIsUnplugged) {
  CardMenuFacts facts = factsOf(adapterWidget);
  facts.placed.configuration.adapter = AdapterParameter{"wlan0", "Wi-Fi (wlan0)"};
  EXPECT_THAT(menuText(facts), HasSubstr("  Wi-Fi (wlan0) *\n"));
  facts.placed.configuration.adapter = AdapterParameter{"usb0", "Phone (usb0)"};
  EXPECT_THAT(menuText(facts), AllOf(HasSubstr("  Phone (usb0) *\n"), Not(HasSubstr("eth0) *"))));
}

TEST(CardMenuTest, TheAutomaticChoiceIsNoAdapterAtAll) {
  const auto menu = cardMenu(factsOf(adapterWidget), FakeStringTable());
  EXPECT_EQ(entryOf(menu, "Automatic, now Ethernet (eth0)").action,
            CardMenuAction(ChooseAdapter{}));
  EXPECT_EQ(entryOf(menu, "Wi-Fi (wlan0)").action,
            CardMenuAction(ChooseAdapter{AdapterParameter{"wlan0", "Wi-Fi (wlan0)"}}));
}

TEST(CardMenuTest, TakingTheTimeTurnsItRound) {
  CardMenuFacts facts = factsOf(panorama);
  EXPECT_EQ(entryOf(cardMenu(facts, FakeStringTable()), "Show time of update").action,
            CardMenuAction(ShowTime{true}));
  facts.placed.configuration.showTimestamp = true;
  EXPECT_EQ(entryOf(cardMenu(facts, FakeStringTable()), "Show time of update").action,
            CardMenuAction(ShowTime{false}));
}

TEST(CardMenuTest, TheDecisionOnWifiNamesIsMarkedAndCanBeTakenBack) {
  CardMenuFacts facts = factsOf(tile);
  facts.wifiNames = ConsentDecision::authorizedWhenInUse;
  EXPECT_THAT(menuText(facts),
              HasSubstr("Wi-Fi names\n  Always show\n  Show while in use *\n  Don't show\n"));
  EXPECT_EQ(entryOf(cardMenu(facts, FakeStringTable()), "Don't show").action,
            CardMenuAction(DecideWifiNames{ConsentDecision::denied}));
}

TEST(CardMenuTest, ASandboxesPortalDecidesForHowLong) {
  CardMenuFacts facts = factsOf(tile);
  facts.isConsentElsewhere = true;
  facts.wifiNames = ConsentDecision::authorizedWhenInUse;
  EXPECT_THAT(menuText(facts), HasSubstr("Wi-Fi names\n  Always show *\n  Don't show\n"));
}

}  // namespace
}  // namespace lanternfold
