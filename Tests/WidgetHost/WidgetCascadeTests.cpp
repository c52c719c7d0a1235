// Where widgets go for which there is no room, and what a user sees of those that they cover.
#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WidgetHost/Placement/MonitorLayout.h"
#include "WidgetHost/Placement/WidgetCascade.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using enum WidgetFamily;

std::vector<MonitorArea> screen(Size size) {
  return {{.name = "DP-1", .size = size, .workArea = {{}, size}, .isPrimary = true}};
}

/// One after the other, where `freePosition` says.
std::vector<StandingWidget> added(const std::vector<WidgetFamily>& families,
                                  std::span<const MonitorArea> monitors) {
  std::vector<StandingWidget> standing;
  for (const WidgetFamily family : families) {
    const Size size = widgetSize(family);
    const auto place = freePosition(size, standing, monitors).value_or(MonitorPosition{});
    standing.push_back(
        {.monitor = place.monitor,
         .frame = {{static_cast<double>(place.x), static_cast<double>(place.y)}, size}});
  }
  return standing;
}

std::vector<Point> places(const std::vector<StandingWidget>& standing) {
  std::vector<Point> places;
  for (const StandingWidget& widget : standing) places.push_back(widget.frame.origin);
  return places;
}

std::vector<Point> placesFrom(std::size_t first, const std::vector<StandingWidget>& standing) {
  const std::vector<Point> all = places(standing);
  return {all.begin() + static_cast<std::ptrdiff_t>(first), all.end()};
}

std::vector<WidgetFamily> firstSetAnd(std::size_t count, WidgetFamily more) {
  std::vector<WidgetFamily> families{large, medium, medium, small, medium};
  families.insert(families.end(), count, more);
  return families;
}

bool isIn(const Rect& frame, Point point) {
  return point.x >= frame.left() && point.x < frame.right() && point.y >= frame.top() &&
         point.y < frame.bottom();
}

/// The points of the widget, counted on every other one of both dimensions, that none above covers.
int visiblePoints(std::size_t index, std::span<const StandingWidget> standing) {
  int points = 0;
  const Rect& frame = standing[index].frame;
  for (double y = frame.top() + 1; y < frame.bottom(); y += 2) {
    for (double x = frame.left() + 1; x < frame.right(); x += 2) {
      const bool isSeen = std::ranges::none_of(
          standing.subspan(index + 1),
          [&](const StandingWidget& above) { return isIn(above.frame, {x, y}); });
      if (isSeen) points += 4;
    }
  }
  return points;
}

int leastVisiblePoints(std::span<const StandingWidget> standing) {
  int least = cascadeStep * cascadeStep;
  for (std::size_t index = 0; index < standing.size(); ++index) {
    least = std::min(least, visiblePoints(index, standing));
  }
  return least;
}

void expectInside(std::span<const StandingWidget> standing, Size size, double margin) {
  for (const auto& [monitor, frame] : standing) {
    EXPECT_GE(frame.left(), margin);
    EXPECT_GE(frame.top(), margin);
    EXPECT_LE(frame.right(), size.width - margin);
    EXPECT_LE(frame.bottom(), size.height - margin);
  }
}

TEST(WidgetCascade, TheFirstSetOnASmallScreenIsAStepAsideOfEachOther) {
  EXPECT_THAT(
      places(added(firstSetAnd(0, small), screen({640, 450}))),
      ElementsAre(Point{252, 24}, Point{228, 48}, Point{204, 72}, Point{58, 266}, Point{180, 96}))
      << "the small one has room";
}

TEST(WidgetCascade, OfFortySmallWidgetsOnAFullScreenEachCanBeSeen) {
  const auto standing = added(firstSetAnd(40, small), screen({1280, 900}));
  expectInside(standing, {1280, 900}, widgetGap);
  EXPECT_THAT(std::vector(standing.begin() + 18, standing.begin() + 21),
              ElementsAre(StandingWidget{"DP-1", {{846, 264}, widgetSize(small)}},
                          StandingWidget{"DP-1", {{822, 288}, widgetSize(small)}},
                          StandingWidget{"DP-1", {{798, 312}, widgetSize(small)}}))
      << "those before have room; where each stands out from the largest one";
  EXPECT_GE(leastVisiblePoints(standing), cascadeStep * cascadeStep);
}

TEST(WidgetCascade, WhatHasRoomStandsAsIfNobodyHadNone) {
  const auto few = added(firstSetAnd(13, small), screen({1280, 900}));
  const auto many = added(firstSetAnd(40, small), screen({1280, 900}));
  EXPECT_TRUE(std::ranges::equal(few, std::span(many).first(few.size())));
  for (std::size_t index = 0; index < few.size(); ++index) {
    EXPECT_EQ(visiblePoints(index, few),
              few[index].frame.size.width * few[index].frame.size.height);
  }
}

TEST(WidgetCascade, GoesOnFromTheOppositeSideBesideThoseThatAreThere) {
  const auto standing = added(std::vector(13, medium), screen({640, 450}));
  EXPECT_THAT(placesFrom(2, standing),
              ElementsAre(Point{228, 48}, Point{204, 72}, Point{180, 96}, Point{156, 120},
                          Point{132, 144}, Point{108, 168}, Point{84, 192}, Point{60, 216},
                          Point{36, 240}, Point{228, 24}, Point{204, 48}));
}

TEST(WidgetCascade, OfFortySmallWidgetsOnASmallScreenEachCanBeSeen) {
  const auto standing = added(std::vector(40, small), screen({640, 480}));
  expectInside(standing, {640, 480}, widgetGap);
  EXPECT_GE(leastVisiblePoints(standing), cascadeStep * cascadeStep);
}

TEST(WidgetCascade, OfFortyOfEachSizeEachCanBeSeen) {
  for (const WidgetFamily family : {small, medium, large}) {
    const auto standing = added(firstSetAnd(40, family), screen({1280, 900}));
    expectInside(standing, {1280, 900}, widgetGap);
    EXPECT_GE(leastVisiblePoints(standing), cascadeStep * cascadeStep);
  }
}

TEST(WidgetCascade, OfALargeAndASmallWidgetTheOneIsNotWithinTheOther) {
  const std::vector<Rect> standing{{{100, 100}, widgetSize(large)}};
  const WidgetCascade cascade(standing, {{}, {640, 600}});
  EXPECT_EQ(cascade.hiddenWith({{200, 200}, widgetSize(small)}), 1U);
  EXPECT_EQ(cascade.hiddenWith({{77, 200}, widgetSize(small)}), 1U);
  EXPECT_EQ(cascade.hiddenWith({{76, 200}, widgetSize(small)}), 0U) << "a step of it stands out";
  EXPECT_EQ(cascade.hiddenWith({{80, 80}, {500, 500}}), 1U);
}

TEST(WidgetCascade, ManyTogetherDoNotHideOne) {
  const Size size = widgetSize(small);
  const std::vector<Rect> standing{
      {{200, 200}, size}, {{176, 176}, size}, {{224, 176}, size}, {{176, 224}, size}};
  const WidgetCascade cascade(standing, {{}, {800, 600}});
  EXPECT_EQ(cascade.hiddenWith({{224, 224}, size}), 1U) << "the last corner of the lowest one";
  EXPECT_EQ(cascade.hiddenWith({{400, 224}, size}), 0U);
}

TEST(WidgetCascade, StandsWhereItHidesFewestWhenItHidesSomeEverywhere) {
  const auto standing = added(std::vector(100, small), screen({320, 320}));
  expectInside(standing, {320, 320}, widgetGap);
  const auto least = added(std::vector(20, large), screen({300, 300}));
  EXPECT_THAT(places(least), testing::Each(Point{0, 0})) << "there is no room for a step";
}

TEST(WidgetCascade, OnAScreenThatIsSmallerThanTheWidgetsTakesTheStepsThatThereAre) {
  const auto standing = added(firstSetAnd(0, small), screen({200, 200}));
  EXPECT_THAT(places(standing),
              ElementsAre(Point{0, 0}, Point{0, 0}, Point{0, 24}, Point{30, 0}, Point{0, 24}));
}

TEST(WidgetCascade, IsTheSameWheneverItIsAsked) {
  EXPECT_EQ(added(firstSetAnd(60, medium), screen({1366, 768})),
            added(firstSetAnd(60, medium), screen({1366, 768})));
}

TEST(WidgetCascade, AHugeDesktopIsNoMatter) {
  const auto standing = added(std::vector(50, large), screen({1'000'000, 100}));
  EXPECT_EQ(standing[0].frame.origin, (Point{999'612, 0}));
  EXPECT_EQ(standing[1].frame.origin, (Point{999'588, 0}));
}

}  // namespace
}  // namespace lanternfold
