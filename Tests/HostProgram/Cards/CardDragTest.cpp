// How cards follow the pointer and the arrow keys.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/Cards/CardDrag.h"

namespace lanternfold {
namespace {

const MonitorArea leftArea{
    .name = "DP-1", .size = {1280, 900}, .workArea = {{0, 24}, {1280, 876}}, .isPrimary = true};
const MonitorArea rightArea{
    .name = "DP-2", .size = {800, 600}, .workArea = {{0, 0}, {800, 600}}, .isPrimary = false};
const std::vector<PlacedMonitor> monitors{{leftArea, {0, 0}}, {rightArea, {1280, 100}}};
constexpr Rect card{{200, 300}, {170, 170}};

TEST(CardDragTest, APressThatHardlyMovesIsAClick) {
  CardDrag drag(card, {250, 350});
  EXPECT_FALSE(drag.moveTo({254, 353}));
  EXPECT_FALSE(drag.isMoving());
  EXPECT_EQ(drag.frame(), card);
}

TEST(CardDragTest, OnceItMovesTheCardFollowsThePointerAlsoBack) {
  CardDrag drag(card, {250, 350});
  EXPECT_TRUE(drag.moveTo({260, 350}));
  EXPECT_EQ(drag.frame(), (Rect{{210, 300}, {170, 170}}));
  EXPECT_TRUE(drag.moveTo({251, 350}));
  EXPECT_EQ(drag.frame(), (Rect{{201, 300}, {170, 170}}));
}

TEST(CardDragTest, LandsOnTheGridOfTheMonitorUnderThePointer) {
  CardDrag drag(card, {250, 350});
  drag.moveTo({1500, 400});
  const auto landing = drag.landing({}, monitors);
  ASSERT_TRUE(landing);
  EXPECT_EQ(landing->monitor, "DP-2");
  EXPECT_EQ(landing->x % placementGrid, 0);
  EXPECT_NEAR(landing->x, 1450 - 1280, placementGrid);
  EXPECT_NEAR(landing->y, 350 - 100, placementGrid);
}

TEST(CardDragTest, OnlyTheWidgetsOfThatMonitorAreSnappedTo) {
  CardDrag drag(card, {250, 350});
  drag.moveTo({1500, 400});
  // Its right neighbour's left edge with the gap would be at 363, four points away from the card's
  // right one, were it on this monitor.
  const std::vector<StandingWidget> elsewhere{{"DP-1", {{367, 250}, {170, 170}}}};
  EXPECT_EQ(drag.landing(elsewhere, monitors), drag.landing({}, monitors));
}

TEST(CardDragTest, WithoutAMonitorItLandsNowhere) {
  EXPECT_FALSE(CardDrag(card, {250, 350}).landing({}, {}));
}

TEST(MonitorAtTest, IsTheNearestWhereThereIsNone) {
  EXPECT_EQ(monitorAt({1279, 0}, monitors)->area.name, "DP-1");
  EXPECT_EQ(monitorAt({1280, 100}, monitors)->area.name, "DP-2");
  EXPECT_EQ(monitorAt({5000, 5000}, monitors)->area.name, "DP-2");
  EXPECT_EQ(monitorAt({-5, -5}, monitors)->area.name, "DP-1");
  EXPECT_EQ(monitorAt({0, 0}, {}), nullptr);
}

TEST(StandingPositionTest, IsOfTheMonitorOfTheMiddleAndOnNoGrid) {
  EXPECT_EQ(standingPosition({{1201, 307}, {170, 170}}, monitors),
            (MonitorPosition{.monitor = "DP-2", .x = 0, .y = 207}));
  EXPECT_EQ(standingPosition({{203, 307}, {170, 170}}, monitors),
            (MonitorPosition{.monitor = "DP-1", .x = 203, .y = 307}));
}

TEST(StandingPositionTest, IsInsideOfTheWorkArea) {
  EXPECT_EQ(standingPosition({{-50, 5}, {170, 170}}, monitors),
            (MonitorPosition{.monitor = "DP-1", .x = 0, .y = 24}));
  EXPECT_EQ(standingPosition({{0, 0}, {170, 170}}, {}), std::nullopt);
}

TEST(SteppedPositionTest, GoesToTheNextLineOfTheGrid) {
  const MonitorPosition start{"DP-1", 203, 304};
  EXPECT_EQ(steppedPosition(start, card.size, 1, 0, leftArea), (MonitorPosition{"DP-1", 208, 304}));
  EXPECT_EQ(steppedPosition(start, card.size, -1, 0, leftArea),
            (MonitorPosition{"DP-1", 200, 304}));
  EXPECT_EQ(steppedPosition(start, card.size, 0, 1, leftArea), (MonitorPosition{"DP-1", 203, 312}));
  EXPECT_EQ(steppedPosition(start, card.size, 0, -1, leftArea),
            (MonitorPosition{"DP-1", 203, 296}));
}

TEST(SteppedPositionTest, EndsAtTheWorkArea) {
  EXPECT_EQ(steppedPosition({"DP-1", 0, 24}, card.size, -1, -1, leftArea),
            (MonitorPosition{"DP-1", 0, 24}));
  EXPECT_EQ(steppedPosition({"DP-1", 1110, 730}, card.size, 1, 1, leftArea),
            (MonitorPosition{"DP-1", 1110, 730}));
}

}  // namespace
}  // namespace lanternfold
