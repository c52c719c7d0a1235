// Grids of which whole rows are shown, at every size.
#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/Elements.h"
#include "ViewTree/Layout.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

/// 12 points high, 5 a character wide.
View line(std::string_view content) { return text(content, {{10}}); }

/// A card of `count` such lines, of which it loses the last ones; as wide as it is offered.
View card(const std::string& name, std::size_t count) {
  std::vector<View> lines;
  for (std::size_t index = 0; index < count; ++index) {
    lines.push_back(line(name + std::to_string(index)));
  }
  FrameNode wide;
  wide.width.maximum = unlimited;
  wide.alignment = topLeading;
  return wholeRows(HorizontalAlignment::leading, {0}, std::move(lines)).frame(wide);
}

LaidOutView laidOut(const View& view, Size size) {
  const MetricTextMeasurer measurer;
  return layOut(view, size, {measurer, ""});
}

std::string dumpOf(const View& view, Size size) { return textDump(laidOut(view, size)); }

/// How many lines the cells show, row by row: "2 1 / 3".
std::string shown(const LaidOutView& grid) {
  std::string rows;
  for (const LaidOutView& row : grid.children) {
    if (!rows.empty()) rows += " / ";
    for (const LaidOutView& cell : row.children) {
      if (&cell != &row.children.front()) rows += ' ';
      rows += std::to_string(cell.children.front().children.front().children.size());
    }
  }
  return rows;
}

std::string shown(const View& grid, double height) { return shown(laidOut(grid, {100, height})); }

TEST(WholeGrid, SharesItsWidthAndLetsAnOddLastCellSpanIt) {
  EXPECT_EQ(dumpOf(wholeGrid({2, 8, 4, topLeading}, {line("a"), line("b"), line("c")}), {48, 28}),
            "whole-grid 0,0 48x28 columns 2 spacing 8 4 top-leading -- \"a, b, c\"\n"
            "  hstack 0,0 48x12 top spacing 8 -- \"a, b\"\n"
            "    text 0,0 5x12 10 \"a\"\n"
            "    text 28,0 5x12 10 \"b\"\n"
            "  hstack 0,16 48x12 top spacing 8 -- \"c\"\n"
            "    text 0,16 5x12 10 \"c\"\n");
}

TEST(WholeGrid, OffersTheLastCellTheWholeWidth) {
  const LaidOutView grid = laidOut(
      wholeGrid({2, 8, 4, topLeading}, {card("a", 1), card("b", 1), card("c", 1)}), {48, 28});
  EXPECT_EQ(grid.children[0].children[0].frame, (Rect{{0, 0}, {20, 12}}));
  EXPECT_EQ(grid.children[0].children[1].frame, (Rect{{28, 0}, {20, 12}}));
  EXPECT_EQ(grid.children[1].children[0].frame, (Rect{{0, 16}, {48, 12}}));
}

TEST(WholeGrid, AlignsACellWithinItsShareAndItsRow) {
  const View grid = wholeGrid({2, 0, 0, {HorizontalAlignment::trailing, VerticalAlignment::bottom}},
                              {line("a"), card("b", 2)});
  EXPECT_NE(dumpOf(grid, {40, 24}).find("text 15,12 5x12 10 \"a\""), std::string::npos);
}

TEST(WholeGrid, OffersEveryCellTheHeightOfItsRow) {
  FrameNode high;
  high.height.maximum = unlimited;
  const View grid =
      wholeGrid({2, 0, 0, topLeading}, {circle(1).frame(high), card("b", 3), line("c")});
  EXPECT_NE(dumpOf(grid, {40, 48}).find("circle 0,0 20x36"), std::string::npos);
}

TEST(WholeGrid, IsAsHighAsItsRowsNeed) {
  const View grid = wholeGrid({1, 0, 5, topLeading}, {card("a", 2), card("b", 1)});
  EXPECT_EQ(laidOut(grid, {50, 100}).frame, (Rect{{0, 29.5}, {50, 41}}));
}

TEST(WholeGrid, SharesTheHeightEquallyAmongRowsThatNeedMore) {
  const View grid = wholeGrid({1, 0, 0, topLeading}, {card("a", 9), card("b", 1), card("c", 9)});
  EXPECT_EQ(shown(grid, 19 * 12), "9 / 1 / 9");
  EXPECT_EQ(shown(grid, 9 * 12), "4 / 1 / 4");
  EXPECT_EQ(shown(grid, 3 * 12), "1 / 1 / 1");
}

TEST(WholeGrid, GivesWhatIsLeftToTheFirstRows) {
  const View grid = wholeGrid({1, 0, 0, topLeading}, {card("a", 9), card("b", 9), card("c", 9)});
  EXPECT_EQ(shown(grid, 4 * 12), "2 / 1 / 1");
  EXPECT_EQ(shown(grid, 5 * 12), "2 / 2 / 1");
  EXPECT_EQ(shown(grid, 5 * 12 + 11), "2 / 2 / 1");
  EXPECT_EQ(shown(grid, 6 * 12), "2 / 2 / 2");
}

TEST(WholeGrid, DropsRowsThatHaveNoRoomForOneLine) {
  const View grid = wholeGrid({2, 4, 3, topLeading}, {card("a", 2), card("b", 3), card("c", 4),
                                                      card("d", 1), card("e", 1)});
  EXPECT_EQ(shown(grid, 3 * 12 + 6), "1 1 / 1 1 / 1");
  EXPECT_EQ(shown(grid, 3 * 12 + 5), "2 2 / 1 1");
  EXPECT_EQ(shown(grid, 2 * 12 + 3), "1 1 / 1 1");
  EXPECT_EQ(shown(grid, 2 * 12 + 2), "2 2");
}

TEST(WholeGrid, AlwaysShowsTheFirstRow) {
  const View grid = wholeGrid({2, 4, 3, topLeading}, {card("a", 2), card("b", 3), card("c", 4)});
  EXPECT_EQ(shown(grid, 12), "1 1");
  EXPECT_EQ(shown(grid, 3), "1 1");
  EXPECT_EQ(shown(grid, 0), "1 1");
}

TEST(WholeGrid, ShowsAllWhereTheHeightIsFree) {
  const View grid = wholeGrid({2, 4, 3, topLeading}, {card("a", 2), card("b", 3), card("c", 4)});
  const View choice = firstThatFits(FitAxes::vertical, {grid, emptyView()});
  EXPECT_EQ(shown(laidOut(choice, {100, 7 * 12 + 3}).children.front()), "2 3 / 4");
  EXPECT_TRUE(laidOut(choice, {100, 7 * 12 + 2}).children.front().children.empty());
}

TEST(WholeGrid, IsIdeallyAsWideAsItsWidestCellsSideBySide) {
  const View grid = wholeGrid({2, 4, 0, topLeading}, {line("a"), line("bcd"), line("efghijk")});
  const View choice = firstThatFits(FitAxes::horizontal, {grid, emptyView()});
  EXPECT_FALSE(laidOut(choice, {35, 50}).children.front().children.empty());
  EXPECT_TRUE(laidOut(choice, {34, 50}).children.front().children.empty());
}

TEST(WholeGrid, OfNothingTakesNoRoom) {
  EXPECT_EQ(dumpOf(wholeGrid({2, 4, 3, topLeading}, {}), {10, 10}),
            "whole-grid 5,5 0x0 columns 2 spacing 4 3 top-leading\n");
}

TEST(WholeGrid, FromRightToLeftBeginsAtTheRight) {
  const MetricTextMeasurer measurer;
  const LaidOutView grid = layOut(wholeGrid({2, 8, 4, topLeading}, {line("a"), line("b")}),
                                  {48, 12}, {measurer, "", LayoutDirection::rightToLeft});
  EXPECT_EQ(grid.children[0].children[0].frame, (Rect{{43, 0}, {5, 12}}));
  EXPECT_EQ(grid.children[0].children[1].frame, (Rect{{15, 0}, {5, 12}}));
}

/// The lines of each row that is shown.
std::vector<std::size_t> linesOfRows(const LaidOutView& grid) {
  std::vector<std::size_t> lines;
  for (const LaidOutView& row : grid.children) {
    std::size_t most = 0;
    for (const LaidOutView& cell : row.children) {
      most = std::max(most, cell.children.front().children.front().children.size());
    }
    lines.push_back(most);
  }
  return lines;
}

TEST(WholeGrid, InMoreHeightLosesNoRowAndNoLineBesideTheSameRows) {
  const View grid =
      wholeGrid({2, 4, 3, topLeading}, {card("a", 2), card("b", 7), card("c", 4), card("d", 1),
                                        card("e", 9), card("f", 3), card("g", 2)});
  std::vector<std::size_t> before;
  for (double height = 0; height < 320; height += 0.5) {
    const LaidOutView laid = laidOut(grid, {100, height});
    const std::vector<std::size_t> now = linesOfRows(laid);
    ASSERT_GE(now.size(), before.size()) << height;
    for (std::size_t row = 0; row < before.size() && now.size() == before.size(); ++row) {
      ASSERT_GE(now[row], before[row]) << height;
    }
    if (height >= 12) {
      ASSERT_LE(laid.frame.size.height, height + 0.01);
    }
    before = now;
  }
  EXPECT_EQ(before, (std::vector<std::size_t>{7, 4, 9, 2}));
}

}  // namespace
}  // namespace lanternfold
