// The fields, sizes, spacings, opacities and orders of the widgets' views.
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/BytesMeters.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceGridView.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceIconView.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceListView.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceView.h"
#include "NetworkWidgetVexExtension/Views/NetworkWidget.h"
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
  const SourceListItem item{"", "192.168.0.1/24", false};  // 84 points wide
  EXPECT_THAT(dumpOf(SourceListItemView{item, false}.body(environment), {65, 20}),
              HasSubstr("\"192.168.0.1/24\"\n"));
  EXPECT_THAT(dumpOf(SourceListItemView{item, false}.body(environment), {62, 20}),
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

TEST(NetworkSourceView, SaysTheSourcesNameAsItsTitle) {
  const View view =
      NetworkSourceView{NetworkSourceView::Direction::horizontal, sampleInterface(), 8, true}.body(
          environment);
  EXPECT_EQ(accessibleDescription(view, ""), "Virtio network device");
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

TEST(NetworkSourceGridView, HasItsModesByRawValue) {
  using Mode = NetworkSourceGridView::DisplayMode;
  EXPECT_EQ(NetworkSourceGridView::displayModeOf(0), Mode::accessory);
  EXPECT_EQ(NetworkSourceGridView::displayModeOf(10), Mode::small);
  EXPECT_EQ(NetworkSourceGridView::displayModeOf(20), Mode::large);
  EXPECT_EQ(NetworkSourceGridView::displayModeOf(5), std::nullopt);
  EXPECT_LT(Mode::accessory, Mode::small);
  EXPECT_LT(Mode::small, Mode::large);
}

TEST(NetworkSourceGridView, ShowsNoSourceWithoutSources) {
  EXPECT_THAT(dumpOf(NetworkSourceGridView{}.body(environment)), HasSubstr("\"No source\""));
}

TEST(NetworkSourceGridView, SpacesTwoSourcesBy10InLargeWidgetsAndBy5Elsewhere) {
  using Mode = NetworkSourceGridView::DisplayMode;
  const auto dump = [](Mode mode) {
    return dumpOf(
        NetworkSourceGridView{{sampleInterface("eth0"), sampleInterface("eth1")}, mode}.body(
            environment),
        {340, 340});
  };
  EXPECT_THAT(dump(Mode::large), HasSubstr("leading spacing 10"));
  EXPECT_THAT(dump(Mode::small), HasSubstr("leading spacing 5"));
}

TEST(NetworkSourceGridView, GivesEachModeItsRowsAndMeters) {
  using Mode = NetworkSourceGridView::DisplayMode;
  WlanInterface wlan = *placeholderEntry().networkState.wlan;
  const auto shown = [&](Mode mode, std::size_t sources, const char* what) {
    NetworkSourceGridView grid{std::vector<AnyNetworkSource>(sources, wlan), mode};
    return occurrences(dumpOf(grid.body(environment), {360, 1000}), what) / sources;
  };
  const auto rows = [&](Mode mode, std::size_t sources) {
    return shown(mode, sources, "rounded-rectangle");
  };
  EXPECT_EQ(rows(Mode::accessory, 1), 1U);
  EXPECT_EQ(rows(Mode::small, 1), 8U);
  EXPECT_EQ(rows(Mode::small, 2), 4U);
  EXPECT_EQ(rows(Mode::large, 1), 8U);
  EXPECT_EQ(rows(Mode::large, 2), 8U);
  EXPECT_EQ(shown(Mode::accessory, 1, " circle "), 0U);
  EXPECT_EQ(shown(Mode::small, 2, " circle "), 2U);
  EXPECT_EQ(shown(Mode::large, 2, " circle "), 2U);
}

TEST(NetworkSourceGridView, HasTwoColumnsForThreeSourcesAndOneInLargeWidgets) {
  using Mode = NetworkSourceGridView::DisplayMode;
  const auto columns = [](Mode mode) {
    const std::vector<AnyNetworkSource> sources(3, sampleInterface());
    return dumpOf(NetworkSourceGridView{sources, mode}.body(environment), {340, 340});
  };
  EXPECT_THAT(columns(Mode::small), HasSubstr("columns 2 spacing 8 6"));
  EXPECT_THAT(columns(Mode::large), HasSubstr("columns 1 spacing 8 10"));
}

// A machine with forty bridges once had a view too large for a host.
TEST(NetworkSourceGridView, HoldsNoMoreSourcesThanAnyWidgetHasRoomFor) {
  const std::vector<AnyNetworkSource> sources(100, sampleInterface());
  const View grid = NetworkSourceGridView{sources}.body(environment);
  EXPECT_EQ(grid.children.size(), 24U);
}

TEST(NetworkSourceGridView, IsOfTheModeOfTheFamily) {
  using Mode = NetworkSourceGridView::DisplayMode;
  EXPECT_EQ(displayModeOf(WidgetFamily::small), Mode::small);
  EXPECT_EQ(displayModeOf(WidgetFamily::medium), Mode::small);
  EXPECT_EQ(displayModeOf(WidgetFamily::large), Mode::large);
}

TEST(NetworkSourceGridView, HidesMetersWhenTold) {
  NetworkSourceGridView grid{{sampleInterface()}};
  EXPECT_THAT(dumpOf(grid.body(environment)), HasSubstr("circle "));
  grid.hideBytesMeters = true;
  EXPECT_EQ(occurrences(dumpOf(grid.body(environment)), " circle "), 0U);
}

TEST(BytesCircularMeter, Is36PointsSquareWithSmallTextsWhenSmall) {
  const BytesCircularMeter meter{{10 << 20, "\u2193", "Received"}, BytesCircularMeter::Size::small};
  EXPECT_EQ(dumpOf(meter.body(environment), {36, 36}),
            "frame 0,0 36x36 width 36 height 36 centre-centre -- \"Received 10 MB\"\n"
            "  zstack 0,0 36x36 centre-centre -- \"\u2193, 10, MB\"\n"
            "    circle 0,0 36x36 line 2\n"
            "    padding 6.4,0 23.2x36 5 5 5 5 -- \"\u2193, 10, MB\"\n"
            "      vstack 11.4,5 13.2x26 centre spacing -1.5 -- \"\u2193, 10, MB\"\n"
            "        offset 15.8,5 4.5x9 0,-1 -- \"\u2193\"\n"
            "          text 15.8,4 4.5x9 down-to 0.6 9 tight \"\u2193\"\n"
            "        text 11.4,12.5 13.2x11 down-to 0.6 11 bold tight \"10\"\n"
            "        offset 13.5,22 9x9 0,1 -- \"MB\"\n"
            "          text 13.5,23 9x9 down-to 0.6 9 tight \"MB\"\n");
}

TEST(BytesCircularMeter, Is42PointsSquareWithLargerTextsElsewhere) {
  for (const auto size : {BytesCircularMeter::Size::automatic, BytesCircularMeter::Size::large}) {
    const std::string dump =
        dumpOf(BytesCircularMeter{{10 << 20, "\u2193", "Received"}, size}.body(environment));
    EXPECT_THAT(dump, HasSubstr("42x42 width 42 height 42"));
    EXPECT_THAT(dump, HasSubstr("10 tight \"\u2193\""));
    EXPECT_THAT(dump, HasSubstr("13 bold tight \"10\""));
    EXPECT_THAT(dump, HasSubstr("10 tight \"MB\""));
  }
}

TEST(BytesCircularMeter, KeepsLongNumbersWholeInsideTheCircle) {
  const BytesCircularMeter meter{{11'319'153'550, "\u2193", "Received"}};
  EXPECT_THAT(dumpOf(meter.body(environment)), HasSubstr("\"10.54\"\n"));
}

TEST(BytesCircularMeter, NeverCountsInBytesOrPetabytes) {
  const auto shown = [](std::uint64_t byteCount) {
    return dumpOf(BytesCircularMeter{{byteCount, "\u2193", "Received"}}.body(environment));
  };
  for (const std::uint64_t few : {0ULL, 1ULL, 1023ULL, 1024ULL}) {
    EXPECT_THAT(shown(few), HasSubstr("\"KB\"")) << few;
  }
  EXPECT_THAT(shown(0), HasSubstr("\"0\"")) << "no word for zero";
  EXPECT_THAT(shown(1ULL << 20), HasSubstr("\"MB\""));
  EXPECT_THAT(shown(1ULL << 30), HasSubstr("\"GB\""));
  for (const std::uint64_t many : {1ULL << 40, 1ULL << 50, ~0ULL}) {
    EXPECT_THAT(shown(many), HasSubstr("\"TB\"")) << many;
  }
}

TEST(BytesMeters, ShowReceivedThenSentBytesWithArrowsAndNames) {
  ConnectionMetrics metrics;
  metrics.recvBytes = 5;
  metrics.sentBytes = 7;
  EXPECT_EQ(bytesMeterFigures(metrics, strings),
            (std::vector<BytesMeterFigure>{{5, "\u2193", "Received"}, {7, "\u2191", "Sent"}}));
}

/// The sizes of the bold texts of `view`.
void addBoldSizes(const LaidOutView& view, std::vector<double>& sizes) {
  if (std::holds_alternative<TextNode>(view.node) && view.shownFont.weight == FontWeight::bold) {
    sizes.push_back(view.shownFont.size);
  }
  for (const LaidOutView& child : view.children) addBoldSizes(child, sizes);
}

// "10.54" once stood beside a larger "3.85".
TEST(BytesMeters, SetTheNumbersOfAPairInOneSize) {
  const MetricTextMeasurer measurer;
  ConnectionMetrics metrics;
  metrics.recvBytes = 11'319'153'550;
  metrics.sentBytes = 4'136'124'909;
  std::vector<double> sizes;
  addBoldSizes(layOut(HBytesMeters{bytesMeterFigures(metrics, strings)}.body(environment), {89, 42},
                      {measurer, ""}),
               sizes);
  ASSERT_EQ(sizes.size(), 2U);
  EXPECT_LT(sizes.front(), 13) << "it would not fit";
  EXPECT_EQ(sizes.front(), sizes.back());
}

// The dots below Arabic letters would touch the ring.
TEST(BytesMeters, DrawAUnitLowerOnlyWhereItsLettersStandOnTheLine) {
  const FakeStringTable arabic(
      std::map<std::string, std::string, std::less<>>{{"MB", "\u0645.\u0628"}});
  const BytesMeterFigure figure{10 << 20, "\u2193", "Received"};
  EXPECT_THAT(dumpOf(BytesCircularMeter{figure}.body(environment)), HasSubstr(" 0,0.8 -- \"MB\""));
  EXPECT_THAT(dumpOf(BytesCircularMeter{figure}.body({arabic})),
              HasSubstr(" 0,0 -- \"\u0645.\u0628\""));
}

TEST(BytesMeters, StandInARowWithASpacingOf5) {
  const HBytesMeters meters{bytesMeterFigures({}, strings)};
  EXPECT_THAT(dumpOf(meters.body(environment), {89, 42}),
              HasSubstr("hstack 0,0 89x42 centre spacing 5"));
}

TEST(BytesMeters, StandInAColumn) {
  const VBytesMeters meters{bytesMeterFigures({}, strings)};
  EXPECT_THAT(dumpOf(meters.body(environment), {42, 89}), HasSubstr("vstack 0,0 42x89 centre"));
}

}  // namespace
}  // namespace lanternfold
