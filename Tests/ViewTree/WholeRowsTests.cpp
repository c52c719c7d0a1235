// Rows that are shown whole or not at all, at every height.
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/Elements.h"
#include "ViewTree/Layout.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

/// 12 points high.
View row(std::string_view content) { return text(content, {{10}}); }

View threeRows() {
  return wholeRows(HorizontalAlignment::leading, {9, 4, 1}, {row("one"), row("two"), row("three")});
}

LaidOutView laidOut(const View& view, Size size) {
  const MetricTextMeasurer measurer;
  return layOut(view, size, {measurer, ""});
}

std::string dumpOf(const View& view, Size size) { return textDump(laidOut(view, size)); }

TEST(WholeRows, StandBelowEachOtherWithTheWidestSpacing) {
  EXPECT_EQ(dumpOf(threeRows(), {25, 54}),
            "whole-rows 0,0 25x54 leading spacing 9 4 1 -- \"one, two, three\"\n"
            "  vstack 0,0 25x54 leading spacing 9 -- \"one, two, three\"\n"
            "    text 0,0 15x12 10 \"one\"\n"
            "    text 0,21 15x12 10 \"two\"\n"
            "    text 0,42 25x12 10 \"three\"\n");
}

TEST(WholeRows, AreAligned) {
  const View view = wholeRows(HorizontalAlignment::trailing, {0}, {row("one"), row("three")});
  EXPECT_NE(dumpOf(view, {25, 24}).find("text 10,0 15x12"), std::string::npos);
}

TEST(WholeRows, StandCloserBeforeOneIsLeftOut) {
  const auto spacing = [](double height) {
    return std::get<VStackNode>(laidOut(threeRows(), {25, height}).children.front().node).spacing;
  };
  EXPECT_EQ(spacing(54), 9);
  EXPECT_EQ(spacing(53.9), 4);
  EXPECT_EQ(spacing(44), 4);
  EXPECT_EQ(spacing(43.9), 1);
  EXPECT_EQ(spacing(38), 1);
}

TEST(WholeRows, LoseTheLastOnesThatHaveNoRoom) {
  EXPECT_EQ(dumpOf(threeRows(), {25, 37}),
            "whole-rows 5,6 15x25 leading spacing 9 4 1 -- \"one, two, three\"\n"
            "  vstack 5,6 15x25 leading spacing 1 -- \"one, two\"\n"
            "    text 5,6 15x12 10 \"one\"\n"
            "    text 5,19 15x12 10 \"two\"\n");
}

TEST(WholeRows, AlwaysShowTheFirst) {
  EXPECT_EQ(dumpOf(threeRows(), {25, 3}),
            "whole-rows 5,-4.5 15x12 leading spacing 9 4 1 -- \"one, two, three\"\n"
            "  vstack 5,-4.5 15x12 leading spacing 1 -- \"one\"\n"
            "    text 5,-4.5 15x12 10 \"one\"\n");
}

TEST(WholeRows, OfNoneTakeNoRoom) {
  EXPECT_EQ(dumpOf(wholeRows(HorizontalAlignment::leading, {9}, {}), {10, 10}),
            "whole-rows 5,5 0x0 leading spacing 9\n");
}

TEST(WholeRows, AreAllThereWhereTheHeightIsFree) {
  const View choice = firstThatFits(FitAxes::vertical, {threeRows(), emptyView()});
  EXPECT_NE(dumpOf(choice, {25, 54}).find("\"three\""), std::string::npos);
  EXPECT_EQ(dumpOf(choice, {25, 53}).find("\"three\""), std::string::npos);
}

TEST(WholeRows, AreAsHighAsTheyAreAtTheWidthThereIs) {
  const View sentence = firstThatFits(
      FitAxes::horizontal,
      {row("ab cd"), vstack(HorizontalAlignment::leading, 0, {row("ab"), row("cd")})});
  const View view = wholeRows(HorizontalAlignment::leading, {1}, {sentence, row("x")});
  EXPECT_NE(dumpOf(view, {25, 25}).find("\"x\""), std::string::npos);
  EXPECT_EQ(dumpOf(view, {15, 25}).find("\"x\"\n"), std::string::npos);
  EXPECT_NE(dumpOf(view, {15, 37}).find("\"x\"\n"), std::string::npos);
}

/// What the rows were once: a choice of stacks, each with rows of its own.
View choiceOfStacks(const std::vector<double>& spacings, std::vector<View> rows) {
  std::vector<View> choices;
  for (const double spacing : spacings) {
    choices.push_back(vstack(HorizontalAlignment::leading, spacing, rows));
  }
  for (; rows.size() > 1; rows.pop_back()) {
    choices.push_back(vstack(HorizontalAlignment::leading, spacings.back(), rows));
  }
  choices.push_back(vstack(HorizontalAlignment::leading, spacings.back(), rows));
  return firstThatFits(FitAxes::vertical, std::move(choices));
}

TEST(WholeRows, LookAtEveryHeightLikeTheChoiceOfStacksThatTheyStandFor) {
  std::vector<View> rows;
  for (int index = 0; index < 8; ++index) {
    rows.push_back(text("row " + std::to_string(index), {{8.0 + index % 3}}));
  }
  const std::vector<double> spacings = {9, 4, 1};
  const View view = wholeRows(HorizontalAlignment::leading, spacings, rows);
  const View choice = choiceOfStacks(spacings, rows);
  for (double height = 0; height < 180; height += 0.5) {
    const LaidOutView one = laidOut(view, {40, height});
    const LaidOutView other = laidOut(choice, {40, height});
    ASSERT_EQ(one.frame, other.frame) << height;
    ASSERT_EQ(one.children, other.children) << height;
  }
}

TEST(WholeRows, NeverLoseOneInMoreHeight) {
  std::size_t before = 0;
  for (double height = 0; height < 60; height += 0.1) {
    const LaidOutView view = laidOut(threeRows(), {25, height});
    const std::size_t now = view.children.front().children.size();
    ASSERT_GE(now, before) << height;
    if (now > 1) {
      ASSERT_LE(view.frame.size.height, height + 0.01);
    }
    before = now;
  }
  EXPECT_EQ(before, 3U);
}

}  // namespace
}  // namespace lanternfold
