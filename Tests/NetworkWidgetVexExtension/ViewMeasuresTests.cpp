// The fields, sizes, spacings, opacities and orders of the widgets' views.
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/NetworkSourceIconView.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceListView.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceView.h"
#include "NetworkWidgetVexExtension/Views/SimpleLabelView.h"
#include "NetworkWidgetVexExtension/Views/SourceListItemView.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "Tests/NetworkWidgetVexExtension/ViewDump.h"

namespace lanternfold {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(WidgetFamily, HasTheSizesOfTheDesktop) {
  EXPECT_EQ(widgetSize(WidgetFamily::small), (Size{170, 170}));
  EXPECT_EQ(widgetSize(WidgetFamily::medium), (Size{364, 170}));
  EXPECT_EQ(widgetSize(WidgetFamily::large), (Size{364, 382}));
}

TEST(NetworkSourceIconView, HasASymbolForEachCategory) {
  EXPECT_EQ(symbolNameOf(NetworkSourceCategory::internet()), "globe");
  EXPECT_EQ(symbolNameOf(NetworkSourceCategory::wlan()), "wifi");
  EXPECT_EQ(symbolNameOf(NetworkSourceCategory::cellular()), "dot.radiowaves.left.and.right");
  EXPECT_EQ(symbolNameOf(NetworkSourceCategory::other()), "bolt.circle");
}

TEST(NetworkSourceIconView, ShowsTheBoltForAnUnknownCategory) {
  EXPECT_EQ(symbolNameOf(NetworkSourceCategory(64)), "bolt.circle");
  EXPECT_EQ(symbolNameOf(NetworkSourceCategory::all()), "bolt.circle");
}

TEST(NetworkSourceIconView, Is18PointsSquare) {
  EXPECT_THAT(dumpOf(NetworkSourceIconView{NetworkSourceCategory::wlan()}.body(environment)),
              HasSubstr("18x18 width 18 height 18"));
}

TEST(NetworkSourceIconView, ShowsHowWellTheNetworkIsReceived) {
  EXPECT_EQ(strengthOf(-20), 1);
  EXPECT_EQ(strengthOf(-50), 1);
  EXPECT_EQ(strengthOf(-75), 0.5);
  EXPECT_EQ(strengthOf(-100), 0);
  EXPECT_EQ(strengthOf(-120), 0);
}

TEST(NetworkSourceView, HandsTheSignalOfItsNetworkToTheIcon) {
  const auto dump = [](const AnyNetworkSource& source) {
    return dumpOf(
        NetworkSourceView{NetworkSourceView::Direction::horizontal, source, 8, false}.body(
            environment));
  };
  WlanInterface wlan = *placeholderState().wlan;
  wlan.currentNetwork->metrics->rssi = -60;
  EXPECT_THAT(dump(wlan), HasSubstr("wifi strength 0.8"));
  wlan.currentNetwork.reset();
  EXPECT_THAT(dump(wlan), Not(HasSubstr("strength")));
  EXPECT_THAT(dump(placeholderState().internet), Not(HasSubstr("strength")));
}

TEST(SimpleLabelView, IsSmallBoldTextOnATranslucentRoundedRectangle) {
  EXPECT_EQ(dumpOf(SimpleLabelView{"MAC"}.body(), {18.4, 13.6}),
            "background 0,0 18.4x13.6 centre-centre -- \"MAC\"\n"
            "  rounded-rectangle 0,0 18.4x13.6 radius 3 fill #FFFFFFFF at 0.4\n"
            "  foreground 0,0 18.4x13.6 LabelForeground -- \"MAC\"\n"
            "    padding 0,0 18.4x13.6 2 2 2 2 -- \"MAC\"\n"
            "      text 2,2 14.4x9.6 8 bold \"MAC\"\n");
}

TEST(SourceListItemView, SpacesLabelAndValueBy4) {
  EXPECT_THAT(dumpOf(SourceListItemView{{"IP", "10.0.0.1", false}, false}.body(environment)),
              HasSubstr("centre spacing 4"));
}

TEST(SourceListItemView, FirstItemStandsOutByWeightNotBySize) {
  const SourceListItem item{"en0", "Adapter", true};
  EXPECT_THAT(dumpOf(SourceListItemView{item, true}.body(environment)),
              HasSubstr("12 bold \"Adapter\""));
  EXPECT_THAT(dumpOf(SourceListItemView{item, false}.body(environment)),
              HasSubstr("12 \"Adapter\""));
}

TEST(SourceListItemView, ShowsLabelAndValueOnlyWhenPresent) {
  EXPECT_THAT(dumpOf(SourceListItemView{{"", "Adapter", true}, false}.body(environment)),
              Not(HasSubstr("rounded-rectangle")));
  EXPECT_EQ(
      occurrences(dumpOf(SourceListItemView{{"en0", "", true}, false}.body(environment)), " text "),
      1U);
}

TEST(SourceListItemView, DropsALabelForLackOfRoomOnlyWhenItIsNotRequired) {
  const auto row = [](bool required) {
    return dumpOf(SourceListItemView{{"Router", "192.168.0.1", required}, false}.body(environment),
                  {60, 20});
  };
  EXPECT_THAT(row(false), Not(HasSubstr("\"Router\"\n")));
  EXPECT_THAT(row(false), HasSubstr("\"192.168.0.1\"\n"));
  EXPECT_THAT(row(true), HasSubstr("\"Router\"\n"));
}

TEST(SourceListItemView, ShortensAddressesInTheMiddleAndNamesAtTheEnd) {
  for (const char* address :
       {"192.168.0.1/24", "02:42:ac:11:1e:d6", "2001:db8::1", "fe80::1", "12.34.56.78 (IT)"}) {
    EXPECT_EQ(truncationOf(address), Truncation::middle) << address;
  }
  for (const char* name :
       {"Ethernet Adapter", "Home Network", "802.11ac", "44 (5 GHz, 80 MHz)", "", "Cafe"}) {
    EXPECT_EQ(truncationOf(name), Truncation::tail) << name;
  }
}

// A network may have a name that looks like an address.
TEST(SourceListItemView, ShortensANameAtItsEndWhateverItLooksLike) {
  const SourceListItem item{"en0", "dead:beef:dead:beef", true};
  EXPECT_THAT(dumpOf(SourceListItemView{item, true}.body(environment), {80, 20}),
              HasSubstr("dead:be"));
  EXPECT_THAT(dumpOf(SourceListItemView{item, true}.body(environment), {80, 20}),
              Not(HasSubstr(" middle ")));
}

TEST(SourceListItemView, BreaksTheSystemsOwnSentenceIntoLines) {
  const SourceListItem item{"SSID", withheldNameText(strings), false};
  const std::string dump = dumpOf(SourceListItemView{item, true}.body(environment), {140, 100});
  EXPECT_THAT(dump, HasSubstr("\"SSID Unvailable,\""));
  EXPECT_THAT(dump, HasSubstr("\"location access\""));
  EXPECT_THAT(dump, HasSubstr("\"needed\""));
}

TEST(SourceListItemView, ShrinksAValueALittleBeforeItIsShortened) {
  const SourceListItem item{"", "WPA2 Personal!", false};  // 84 points wide
  EXPECT_THAT(dumpOf(SourceListItemView{item, false}.body(environment), {65, 20}),
              HasSubstr("\"WPA2 Personal!\"\n"));
  EXPECT_THAT(dumpOf(SourceListItemView{item, false}.body(environment), {62, 20}),
              HasSubstr("\u2026"));
}

// Whole addresses of version 6 once lost their middle in a medium widget.
TEST(SourceListItemView, ShrinksAnAddressToTheSmallestFontBeforeItIsShortened) {
  const SourceListItem item{"", "192.168.0.1/24", false};  // 84 points wide
  EXPECT_THAT(dumpOf(SourceListItemView{item, false}.body(environment), {57, 20}),
              HasSubstr("8.1 \"192.168.0.1/24\"\n"));
  EXPECT_THAT(dumpOf(SourceListItemView{item, false}.body(environment), {55, 20}),
              HasSubstr("\u2026"));
}

TEST(SourceListItemView, ShortensALongNameOfAnInterfaceInANarrowCard) {
  WidgetEnvironment narrow = environment;
  narrow.hasNarrowCards = true;
  const auto dump = [](const char* name, const WidgetEnvironment& in) {
    return dumpOf(SourceListItemView{{name, "Home", true}, true}.body(in));
  };
  EXPECT_THAT(dump("wlx0123456789ab", environment), HasSubstr("\"wlx0123456789ab\"\n"));
  EXPECT_THAT(dump("wlx0123456789ab", narrow), HasSubstr("8 bold \"wlx0\u202689ab\"\n"));
  EXPECT_THAT(dump("wlx0123456789ab", narrow), HasSubstr("-- \"wlx0123456789ab, Home\""));
  EXPECT_THAT(dump("enp0s31f6u", narrow), HasSubstr("\"enp0s31f6u\"\n"));
  EXPECT_THAT(dump("Carrier 2, data", narrow), HasSubstr("\"Carrier 2, data\"\n"));
  // The Italian label of a row that tells no name was once taken for an interface's.
  const SourceListItem connection{"Connessione", "Ethernet", false};
  EXPECT_THAT(dumpOf(SourceListItemView{connection, false}.body(narrow)),
              HasSubstr("\"Connessione\"\n"));
}

TEST(NetworkSourceListView, ShowsAtMostRowLimitRows) {
  const auto rows = [](std::size_t limit) {
    const NetworkSourceListView list{topLeading, sampleInterface(), limit};
    return occurrences(dumpOf(list.body(environment)), "rounded-rectangle");
  };
  EXPECT_EQ(rows(8), 4U);
  EXPECT_EQ(rows(4), 4U);
  EXPECT_EQ(rows(1), 1U);
  EXPECT_EQ(rows(0), 0U);
}

TEST(NetworkSourceListView, IsTopLeadingInAllTheWidthThereIs) {
  const NetworkSourceListView list{topLeading, sampleInterface(), 1};
  EXPECT_THAT(dumpOf(list.body(environment)), HasSubstr("340x15 max-width unlimited top-leading"));
  EXPECT_THAT(dumpOf(list.body(environment)), HasSubstr("top spacing 5"));
}

TEST(NetworkSourceView, SaysTheSourcesNameAndThenItsRows) {
  const View view =
      NetworkSourceView{NetworkSourceView::Direction::horizontal, sampleInterface(), 8, true}.body(
          environment);
  EXPECT_TRUE(accessibleDescription(view, "").starts_with("Virtio network device, eth0, "))
      << accessibleDescription(view, "");
}

/// The frame of the first node of `Kind` below `view`.
template <typename Kind>
Rect frameOfFirst(const LaidOutView& view) {
  if (std::holds_alternative<Kind>(view.node)) return view.frame;
  for (const LaidOutView& child : view.children) {
    const Rect found = frameOfFirst<Kind>(child);
    if (found.size.width > 0) return found;
  }
  return {};
}

TEST(NetworkSourceView, ArrangesIconAndRowsByDirection) {
  const MetricTextMeasurer measurer;
  const auto laidOut = [&](NetworkSourceView::Direction direction) {
    const NetworkSourceView view{direction, sampleInterface(), 1, false};
    return layOut(view.body(environment), {340, 138}, {measurer, ""});
  };
  const LaidOutView beside = laidOut(NetworkSourceView::Direction::horizontal);
  EXPECT_EQ(frameOfFirst<TextNode>(beside).left(), frameOfFirst<SymbolNode>(beside).right() + 5 + 2)
      << "and the label's padding";
  const LaidOutView below = laidOut(NetworkSourceView::Direction::vertical);
  EXPECT_GE(frameOfFirst<TextNode>(below).top(), frameOfFirst<SymbolNode>(below).bottom() + 5);
  EXPECT_EQ(frameOfFirst<TextNode>(below).left(), frameOfFirst<SymbolNode>(below).left() + 2);
}

TEST(NetworkSourceView, ShowsMetersOnlyWhereWanted) {
  const auto circles = [](bool shown) {
    const NetworkSourceView view{NetworkSourceView::Direction::horizontal, sampleInterface(), 8,
                                 shown};
    return occurrences(dumpOf(view.body(environment)), "circle ");
  };
  EXPECT_EQ(circles(true), 2U);
  EXPECT_EQ(circles(false), 0U);
}

TEST(NetworkSourceView, ShowsNoMetersOfCountersThatNobodyHasRead) {
  BasicInterface adapter = sampleInterface();
  const auto circles = [&] {
    const NetworkSourceView view{NetworkSourceView::Direction::horizontal, adapter, 8, true};
    return occurrences(dumpOf(view.body(environment)), "circle ");
  };
  adapter.metrics = ConnectionMetrics::initial(1500);
  EXPECT_EQ(circles(), 2U) << "nothing has passed yet";
  adapter.metrics = ConnectionMetrics::empty();
  EXPECT_EQ(circles(), 0U);
}

TEST(NetworkSourceView, ShowsMetersOfAnInternetThatHasPassedNothingYet) {
  InternetInfo internet = placeholderState().internet;
  internet.metrics = ConnectionMetrics::empty();
  const auto circles = [&] {
    const NetworkSourceView view{NetworkSourceView::Direction::horizontal, internet, 8, true};
    return occurrences(dumpOf(view.body(environment)), "circle ");
  };
  EXPECT_EQ(circles(), 2U);
  internet.active = false;
  EXPECT_EQ(circles(), 0U) << "nothing is known yet";
}

}  // namespace
}  // namespace lanternfold
