// What a user sees at the first start, on screens of common sizes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WidgetHost/Placement/MonitorLayout.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::Pair;

const std::vector<Size> firstSet{widgetSize(WidgetFamily::large), widgetSize(WidgetFamily::medium),
                                 widgetSize(WidgetFamily::medium), widgetSize(WidgetFamily::small),
                                 widgetSize(WidgetFamily::medium)};

std::vector<MonitorArea> screen(double width, double height) {
  return {{.name = "DP-1",
           .size = {width, height},
           .workArea = {.origin = {}, .size = {width, height}},
           .isPrimary = true}};
}

std::vector<std::pair<int, int>> firstPlaces(double width, double height) {
  std::vector<std::pair<int, int>> places;
  for (const auto& position : firstPositions(firstSet, screen(width, height))) {
    EXPECT_TRUE(position);
    places.emplace_back(position->x, position->y);
  }
  return places;
}

TEST(FirstPositions, BeginAColumnWithTheSmallOneWhereItIsItsTurn) {
  EXPECT_THAT(firstPlaces(1280, 900), ElementsAre(Pair(892, 24), Pair(892, 430), Pair(892, 624),
                                                  Pair(698, 24), Pair(504, 218)));
}

TEST(FirstPositions, LeaveNoHoleBesideTheSmallOneWithinAColumn) {
  EXPECT_THAT(firstPlaces(1366, 768), ElementsAre(Pair(978, 24), Pair(978, 430), Pair(590, 24),
                                                  Pair(784, 412), Pair(590, 218)));
  EXPECT_THAT(firstPlaces(1280, 800), ElementsAre(Pair(892, 24), Pair(892, 430), Pair(504, 24),
                                                  Pair(698, 412), Pair(504, 218)));
  EXPECT_THAT(firstPlaces(2560, 1440), ElementsAre(Pair(2172, 24), Pair(2172, 430), Pair(2172, 624),
                                                   Pair(2366, 1012), Pair(2172, 818)));
}

TEST(FirstPositions, FillAColumnBeforeTheSmallOneBeginsTheNext) {
  EXPECT_THAT(firstPlaces(1920, 1080), ElementsAre(Pair(1532, 24), Pair(1532, 430), Pair(1532, 624),
                                                   Pair(1338, 24), Pair(1532, 818)));
}

TEST(FirstPositions, AreThoseOfOneAfterTheOtherWhereThereIsNoRoomForAll) {
  EXPECT_THAT(firstPlaces(820, 590), ElementsAre(Pair(432, 24), Pair(44, 24), Pair(44, 218),
                                                 Pair(238, 412), Pair(408, 48)))
      << "the small one last would have no room either";
  EXPECT_THAT(firstPlaces(640, 450), ElementsAre(Pair(252, 24), Pair(228, 48), Pair(204, 72),
                                                 Pair(58, 266), Pair(180, 96)));
}

TEST(FirstPositions, AreNoneWithoutAMonitor) {
  EXPECT_THAT(firstPositions(firstSet, {}), testing::Each(std::nullopt));
  EXPECT_THAT(firstPositions(firstSet, {}), testing::SizeIs(5));
}

}  // namespace
}  // namespace lanternfold
