#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "WidgetHost/Placement/MonitorLayout.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {
namespace {

const Size smallWidget = widgetSize(WidgetFamily::small);
const Size mediumWidget = widgetSize(WidgetFamily::medium);
const Size largeWidget = widgetSize(WidgetFamily::large);

/// With a panel of 40 points on top.
MonitorArea monitor(std::string name, Size size, bool isPrimary = false) {
  return {.name = std::move(name),
          .size = size,
          .workArea = {.origin = {0, 40}, .size = {size.width, size.height - 40}},
          .isPrimary = isPrimary};
}

const MonitorArea desk = monitor("DP-1", {1920, 1080}, true);
const MonitorArea lid = monitor("eDP-1", {1280, 800});
const std::vector<MonitorArea> both{lid, desk};

MonitorPosition at(std::string name, int x, int y) { return {std::move(name), x, y}; }

Rect frameOf(const MonitorPosition& position, Size size) {
  return {.origin = {static_cast<double>(position.x), static_cast<double>(position.y)},
          .size = size};
}

bool overlap(const Rect& one, const Rect& other) {
  return one.left() < other.right() && other.left() < one.right() && one.top() < other.bottom() &&
         other.top() < one.bottom();
}

bool isInside(const Rect& frame, const Rect& area) {
  return frame.left() >= area.left() && frame.right() <= area.right() &&
         frame.top() >= area.top() && frame.bottom() <= area.bottom();
}

TEST(ShownPosition, IsTheRememberedOneWhereThatIsInside) {
  EXPECT_EQ(shownPosition(at("DP-1", 100, 200), smallWidget, both), at("DP-1", 100, 200));
  EXPECT_EQ(shownPosition(at("eDP-1", 0, 40), smallWidget, both), at("eDP-1", 0, 40));
}

TEST(ShownPosition, OfOneThatLiesOutsideIsMovedNoFurtherThanIsNeeded) {
  EXPECT_EQ(shownPosition(at("DP-1", -500, 300), smallWidget, both), at("DP-1", 0, 300));
  EXPECT_EQ(shownPosition(at("DP-1", 1900, 5000), smallWidget, both), at("DP-1", 1750, 910));
  EXPECT_EQ(shownPosition(at("DP-1", 100, 0), smallWidget, both), at("DP-1", 100, 40))
      << "not below the panel";
  constexpr int huge = std::numeric_limits<int>::max();
  EXPECT_EQ(shownPosition(at("DP-1", huge, -huge), smallWidget, both), at("DP-1", 1750, 40));
}

TEST(ShownPosition, IsOnThePrimaryMonitorWhileItsOwnIsUnplugged) {
  const MonitorPosition remembered = at("HDMI-7", 1000, 700);
  EXPECT_EQ(shownPosition(remembered, smallWidget, both), at("DP-1", 1000, 700));
  EXPECT_EQ(shownPosition(remembered, smallWidget, std::vector{lid}), at("eDP-1", 1000, 630));
  EXPECT_EQ(shownPosition(at("", 10, 50), smallWidget, both), at("DP-1", 10, 50));

  const std::vector<MonitorArea> pluggedAgain{lid, desk, monitor("HDMI-7", {1920, 1080})};
  EXPECT_EQ(shownPosition(remembered, smallWidget, pluggedAgain), remembered);
}

TEST(ShownPosition, IsNoneWithoutAMonitor) {
  EXPECT_EQ(shownPosition(at("DP-1", 1, 1), smallWidget, {}), std::nullopt);
}

TEST(ShownPosition, OnAMonitorSmallerThanTheWidgetIsTheWorkAreasCorner) {
  const std::vector<MonitorArea> tiny{monitor("tiny", {200, 200}, true)};
  EXPECT_EQ(shownPosition(at("tiny", 150, 150), largeWidget, tiny), at("tiny", 0, 40));
  EXPECT_EQ(shownPosition(at("tiny", 150, 150), smallWidget, tiny), at("tiny", 30, 40));
}

TEST(ShownPosition, TakesTheWholeMonitorForAWorkAreaThatMakesNoSense) {
  for (const Rect& area : {Rect{}, Rect{.origin = {0, 0}, .size = {-5, 100}},
                           Rect{.origin = {std::nan(""), 0}, .size = {100, 100}},
                           Rect{.origin = {0, 0}, .size = {unlimited, unlimited}}}) {
    const std::vector<MonitorArea> odd{
        {.name = "odd", .size = {800, 600}, .workArea = area, .isPrimary = true}};
    EXPECT_EQ(shownPosition(at("odd", 9000, 9000), smallWidget, odd), at("odd", 630, 430));
  }
}

TEST(SnappedOrigin, IsOnTheGridWhereNothingIsNear) {
  EXPECT_EQ(snappedOrigin({.origin = {403, 245}, .size = smallWidget}, {}, desk),
            (Point{400, 248}));
}

TEST(SnappedOrigin, SnapsToTheWorkAreasEdges) {
  EXPECT_EQ(snappedOrigin({.origin = {5, 46}, .size = smallWidget}, {}, desk), (Point{0, 40}));
  EXPECT_EQ(snappedOrigin({.origin = {1743, 905}, .size = smallWidget}, {}, desk),
            (Point{1750, 910}));
}

TEST(SnappedOrigin, SnapsToEdgesAndGapsOfTheOthers) {
  const std::vector<Rect> others{{.origin = {501, 303}, .size = mediumWidget}};
  EXPECT_EQ(snappedOrigin({.origin = {506, 497}, .size = smallWidget}, others, desk),
            (Point{501, 497}))
      << "below, aligned at the left, with the gap between them";
  EXPECT_EQ(snappedOrigin({.origin = {890, 309}, .size = smallWidget}, others, desk),
            (Point{889, 303}))
      << "at the right, aligned at the top";
  EXPECT_EQ(snappedOrigin({.origin = {302, 310}, .size = smallWidget}, others, desk),
            (Point{307, 303}))
      << "at the left";
  EXPECT_EQ(snappedOrigin({.origin = {691, 700}, .size = smallWidget}, others, desk),
            (Point{695, 704}))
      << "right edges aligned; too far below for the gap";
}

TEST(SnappedOrigin, AGapIsThatOfAWidgetBeside) {
  const std::vector<Rect> others{{.origin = {501, 303}, .size = mediumWidget}};
  EXPECT_EQ(snappedOrigin({.origin = {890, 700}, .size = smallWidget}, others, desk),
            (Point{888, 704}));
}

TEST(SnappedOrigin, StaysInsideWhateverIsDragged) {
  const std::vector<Rect> others{{.origin = {1900, 1000}, .size = largeWidget}};
  for (double x = -400; x <= 2400; x += 37) {
    for (double y = -400; y <= 1600; y += 41) {
      const Point origin = snappedOrigin({.origin = {x, y}, .size = smallWidget}, others, desk);
      EXPECT_TRUE(isInside({.origin = origin, .size = smallWidget}, desk.workArea))
          << x << ' ' << y;
    }
  }
  EXPECT_EQ(snappedOrigin({.origin = {std::nan(""), unlimited}, .size = smallWidget}, {}, desk),
            (Point{0, 40}));
}

/// Places as many small widgets as asked for, one after the other.
std::vector<StandingWidget> filled(std::size_t count, Size size,
                                   std::span<const MonitorArea> monitors) {
  std::vector<StandingWidget> standing;
  while (standing.size() < count) {
    const auto position = freePosition(size, standing, monitors);
    if (!position) return standing;
    standing.push_back({.monitor = position->monitor, .frame = frameOf(*position, size)});
  }
  return standing;
}

TEST(FreePosition, BeginsAtTheRightTopCornerAndGoesDown) {
  const auto standing = filled(6, smallWidget, both);
  ASSERT_EQ(standing.size(), 6U);
  EXPECT_EQ(standing[0].frame.origin, (Point{1726, 64}));
  EXPECT_EQ(standing[1].frame.origin, (Point{1726, 258}));
  EXPECT_EQ(standing[4].frame.origin, (Point{1726, 840}));
  EXPECT_EQ(standing[5].frame.origin, (Point{1532, 64})) << "the next column";
}

TEST(FreePosition, OfTheFiveWidgetsNoneOverlaps) {
  std::vector<StandingWidget> standing;
  for (const Size size : {largeWidget, mediumWidget, mediumWidget, smallWidget, mediumWidget}) {
    const auto position = freePosition(size, standing, both);
    ASSERT_TRUE(position);
    const Rect frame = frameOf(*position, size);
    EXPECT_TRUE(isInside(frame, desk.workArea));
    for (const StandingWidget& other : standing) EXPECT_FALSE(overlap(frame, other.frame));
    standing.push_back({.monitor = position->monitor, .frame = frame});
  }
}

TEST(FreePosition, IsOnAnotherMonitorWhenThePrimaryOneIsFull) {
  const auto standing = filled(50, smallWidget, both);
  EXPECT_EQ(standing[44].monitor, "DP-1") << "nine columns of five";
  EXPECT_EQ(standing[45].monitor, "eDP-1");
}

TEST(FreePosition, OnAMonitorSmallerThanTheWidgetIsTheWorkAreasCorner) {
  const std::vector<MonitorArea> tiny{monitor("tiny", {200, 200}, true)};
  EXPECT_EQ(freePosition(largeWidget, {}, tiny), at("tiny", 0, 40));
}

TEST(FreePosition, IsNoneWithoutAMonitor) {
  EXPECT_EQ(freePosition(smallWidget, {}, {}), std::nullopt);
}

TEST(FreePosition, FindsTheOnlyHoleThereIs) {
  const std::vector<MonitorArea> wide{monitor("wide", {630, 260}, true)};
  // The work area within the gap holds three small widgets beside each other; the middle one is
  // missing.
  const std::vector<StandingWidget> standing{
      {.monitor = "wide", .frame = {.origin = {24, 64}, .size = smallWidget}},
      {.monitor = "wide", .frame = {.origin = {412, 64}, .size = smallWidget}},
      {.monitor = "elsewhere", .frame = {.origin = {218, 64}, .size = smallWidget}}};
  EXPECT_EQ(freePosition(smallWidget, standing, wide), at("wide", 218, 64));
}

}  // namespace
}  // namespace lanternfold
