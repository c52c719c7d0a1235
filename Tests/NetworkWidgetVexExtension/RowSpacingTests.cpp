// How far apart rows stand.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/RowSpacing.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;

StackedSources twoSources() {
  return {.rowCounts = {4, 2}, .rowHeight = 10, .between = 5, .available = 85, .widest = 8};
}

TEST(RowSpacing, IsTheWidestAtWhichAllRowsHaveRoom) {
  StackedSources sources = twoSources();
  EXPECT_EQ(rowSpacingsOf(sources).front(), 5) << "60 of rows, 5 between the sources, 4 gaps";
  sources.available = 84.9;
  EXPECT_EQ(rowSpacingsOf(sources).front(), 4);
  sources.available = 1000;
  EXPECT_EQ(rowSpacingsOf(sources).front(), 8) << "the widest";
}

TEST(RowSpacing, CountsASourceAsHighAsItIsAtLeast) {
  StackedSources sources = twoSources();
  sources.leastSourceHeight = 30;
  EXPECT_EQ(rowSpacingsOf(sources).front(), 3) << "the second source takes 30 anyway";
}

TEST(RowSpacing, KeepsAsFarFromALineBelow) {
  StackedSources sources = twoSources();
  sources.endAboveALine = true;
  EXPECT_EQ(rowSpacingsOf(sources).front(), 4) << "a fifth gap";
}

TEST(RowSpacing, FallsBackToLessDownToOne) {
  EXPECT_THAT(rowSpacingsOf({.rowCounts = {2}, .rowHeight = 1, .available = 100, .widest = 22}),
              ElementsAre(22, 11, 5, 2, 1));
}

TEST(RowSpacing, IsOneWhereThereIsNoRoomOrNothingToSpace) {
  StackedSources sources = twoSources();
  sources.available = 10;
  EXPECT_THAT(rowSpacingsOf(sources), ElementsAre(1));
  EXPECT_THAT(rowSpacingsOf({}), ElementsAre(1));
  EXPECT_EQ(rowSpacingsOf({.rowCounts = {0}, .available = 5, .widest = 2}).front(), 2);
}

/// The stacks of the rows of each source that has some.
void addStacksOfRows(const LaidOutView& view, std::vector<LaidOutView>& stacks) {
  const bool isRows = std::holds_alternative<WholeRowsNode>(view.node);
  for (const LaidOutView& child : view.children) {
    if (isRows) stacks.push_back(child);
    if (!isRows) addStacksOfRows(child, stacks);
  }
}

std::vector<LaidOutView> stacksOfRows(const std::string& name) {
  std::vector<LaidOutView> stacks;
  for (const CardState& card : cardStates()) {
    if (card.name == name) addStacksOfRows(card.laidOut(), stacks);
  }
  return stacks;
}

// The middle one of three sources once had its rows closer than the others.
TEST(RowSpacing, IsTheSameForAllSourcesOfALargeWidget) {
  for (const char* card : {"panoramic_large_placeholder", "panoramic_large_timestamp",
                           "panoramic_large_cellular", "panoramic_large_no_wifi"}) {
    const std::vector<LaidOutView> stacks = stacksOfRows(card);
    ASSERT_GE(stacks.size(), 2U) << card;
    const double first = std::get<VStackNode>(stacks.front().node).spacing;
    for (const LaidOutView& stack : stacks) {
      EXPECT_EQ(std::get<VStackNode>(stack.node).spacing, first) << card;
    }
  }
}

TEST(RowSpacing, KeepsRowsOfSeveralSourcesCloserThanTheSources) {
  for (const char* card : {"panoramic_large_no_wifi", "panoramic_small_not_connected"}) {
    const double between = std::string(card).contains("large") ? 10 : 5;
    for (const LaidOutView& stack : stacksOfRows(card)) {
      EXPECT_LT(std::get<VStackNode>(stack.node).spacing, between) << card;
    }
  }
}

// Four rows once left the lower third of the card empty.
TEST(RowSpacing, SpreadsTheRowsOfTheOnlySourceOverItsCard) {
  for (const char* card : {"adapter_medium_placeholder", "internet_medium_placeholder"}) {
    ASSERT_EQ(stacksOfRows(card).size(), 1U) << card;
    EXPECT_GE(stacksOfRows(card).front().frame.bottom(), 136) << card;
  }
}

TEST(RowSpacing, KeepsAwayFromTheTimeOfDrawingWhereThereIsRoom) {
  const double line = 170 - 8 - 17;
  EXPECT_LE(stacksOfRows("adapter_medium_timestamp").front().frame.bottom(), line - 15);
  EXPECT_LE(stacksOfRows("wlan_medium_timestamp").front().frame.bottom(), line);
}

}  // namespace
}  // namespace lanternfold
