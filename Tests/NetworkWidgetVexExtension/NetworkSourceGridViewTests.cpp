// How the sources of a widget share its room.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/NetworkSourceGridView.h"
#include "NetworkWidgetVexExtension/Views/NetworkWidget.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "Tests/NetworkWidgetVexExtension/ViewDump.h"

namespace lanternfold {
namespace {

using testing::HasSubstr;

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

TEST(NetworkSourceGridView, OpensAColumnWithTheThirdCardAndARowWithTheFifth) {
  using Mode = NetworkSourceGridView::DisplayMode;
  const auto shapes = [](Mode mode) {
    std::string text;
    for (std::size_t count = 1; count <= 7; ++count) {
      const std::vector<AnyNetworkSource> sources(count, sampleInterface());
      const auto [columns, rows] = NetworkSourceGridView{sources, mode}.shape();
      text += std::to_string(columns) + "x" + std::to_string(rows) + " ";
    }
    return text;
  };
  EXPECT_EQ(shapes(Mode::small), "1x1 1x2 2x2 2x2 2x3 2x3 2x4 ");
  EXPECT_EQ(shapes(Mode::accessory), shapes(Mode::small));
  EXPECT_EQ(shapes(Mode::large), "1x1 1x2 1x3 1x4 1x5 1x6 1x7 ");
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

}  // namespace
}  // namespace lanternfold
