// Who gets how much room: what stacks and frames agree on with the views inside them.
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/ViewTree/LaidOut.h"

namespace lanternfold {
namespace {

/// What is as wide as it is offered, between two bounds.
View flexible(std::optional<double> minimum = 0, std::optional<double> ideal = std::nullopt,
              std::optional<double> maximum = unlimited) {
  FrameNode frame;
  frame.width = {std::nullopt, minimum, ideal, maximum};
  frame.height.fixed = 10;
  return circle(1).frame(frame);
}

View fixed(double width) { return circle(1).frame(width, 10); }

View row(std::vector<View> children, double spacing = 0) {
  return hstack(VerticalAlignment::top, spacing, std::move(children));
}

/// "x+width" of each child of the row, which is offered `width` and begins at 0.
std::string places(const View& view, double width) {
  FrameNode whole = fillingFrame(topLeading);
  whole.width.minimum = 0;
  const View picture = View(view).frame(whole);
  const LaidOutView laid = laidOut(picture, {width, 100});
  std::string places;
  for (const LaidOutView& child : laid.children.front().children) {
    if (!places.empty()) places += ' ';
    const auto number = [](double length) { return std::to_string(static_cast<int>(length)); };
    places += number(child.frame.left()) + '+' + number(child.frame.size.width);
  }
  return places;
}

struct Case {
  std::string name;
  View view;
  double width;
  std::string expected;
  friend void PrintTo(const Case& one, std::ostream* stream) { *stream << one.name; }
};

class Negotiation : public testing::TestWithParam<Case> {};

TEST_P(Negotiation, EndsAsItShould) {
  EXPECT_EQ(places(GetParam().view, GetParam().width), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    OfRows, Negotiation,
    testing::Values(
        Case{"TextBesideAnUnlimitedFrame", row({word("abcd"), flexible()}), 100, "0+20 20+80"},
        Case{"UnlimitedFrameBesideAText", row({flexible(), word("abcd")}), 100, "0+80 80+20"},
        Case{"TwoUnlimitedFrames", row({flexible(), flexible()}), 100, "0+50 50+50"},
        Case{"ThreeUnlimitedFramesAndSpacing", row({flexible(), flexible(), flexible()}, 5), 100,
             "0+30 35+30 70+30"},
        Case{"FixedBesideUnlimited", row({fixed(30), flexible()}), 100, "0+30 30+70"},
        Case{"FixedFramesThatDoNotFit", row({fixed(70), fixed(60)}), 100, "0+70 70+60"},
        Case{"MinimumAboveTheShare", row({flexible(60), flexible()}), 100, "0+60 60+40"},
        Case{"MaximumBelowTheShare", row({flexible(0, {}, 20), flexible()}), 100, "0+20 20+80"},
        Case{"LeastFlexibleFirst",
             row({flexible(), flexible(0, {}, 30), flexible(10, {}, 20), fixed(40)}), 120,
             "0+30 30+30 60+20 80+40"},
        Case{"TwoTextsOfWhichTheLongerIsShortened", row({word("abcdefghijkl"), word("abcd")}), 50,
             "0+30 30+20"},
        Case{"TextsOfEqualLengthShareTheLoss", row({word("abcdefgh"), word("abcdefgh")}), 60,
             "0+30 30+30"},
        Case{"PriorityBeforeFlexibility",
             row({fixed(30), flexible(), flexible(0, {}, 60).layoutPriority(1)}), 100,
             "0+30 30+10 40+60"},
        Case{"PriorityKeepsTheMinimumOfTheOthers",
             row({flexible(25), flexible().layoutPriority(1)}), 100, "0+25 25+75"},
        Case{"LowerPriorityComesLast", row({flexible().layoutPriority(-1), flexible(), flexible()}),
             100, "0+0 0+50 50+50"},
        Case{"PriorityIsThatOfWhatStandsInside",
             row({flexible(), flexible(0, {}, 80).layoutPriority(1).padding(0)}), 100,
             "0+20 20+80"},
        Case{"TheOutermostPriorityHolds",
             row({flexible(), flexible(0, {}, 80).layoutPriority(5).layoutPriority(-1)}), 100,
             "0+100 100+0"},
        Case{"NegativeSpacing", row({flexible(), flexible()}, -10), 100, "0+55 45+55"},
        Case{"NegativeSpacingOfFixedFrames", row({fixed(30), fixed(30)}, -10), 100, "0+30 20+30"},
        Case{"EmptyViewsTakeNoSpacing",
             row({emptyView(), fixed(10), emptyView(), fixed(10), emptyView()}, 5), 100,
             "0+0 0+10 10+0 15+10 25+0"},
        Case{"EmptyViewsUnderModifiersThatKeepTheRoomTakeNone",
             row({fixed(10), emptyView().foreground(Colour::white()).offset(3, 0), fixed(10)}, 5),
             100, "0+10 10+0 15+10"},
        Case{"EmptyViewsInAFrameTakeItsRoom",
             row({fixed(10), emptyView().frame(7, 10), fixed(10)}, 5), 100, "0+10 15+7 27+10"},
        Case{"EmptyStacksTakeSpacing", row({fixed(10), row({}), fixed(10)}, 5), 100,
             "0+10 15+0 20+10"},
        Case{"OnlyEmptyViews", row({emptyView(), emptyView()}, 5), 100, "0+0 0+0"},
        Case{"NestedRowsShareAsOneMemberEach", row({row({flexible(), flexible()}), flexible()}),
             100, "0+50 50+50"},
        Case{"ANestedRowOfTextsIsLessFlexibleThanAFrame",
             row({flexible(), row({word("abcd"), word("ef")})}), 100, "0+70 70+30"},
        Case{"SpacingThatDoesNotFitGivesWay", row({flexible(), flexible(), flexible()}, 20), 30,
             "0+0 15+0 30+0"}),
    [](const auto& one) { return one.param.name; });

TEST(Negotiation, AsksForIdealSizesWhereNothingIsOffered) {
  const View view = row({flexible(10, 40), fixed(20), word("abcd"), circle(1)}, 1);
  const View choice = firstThatFits(FitAxes::horizontal, {view, emptyView()});
  EXPECT_NE(dumpOf(choice, {93, 20}).find("hstack"), std::string::npos);
  EXPECT_EQ(dumpOf(choice, {92, 20}).find("hstack"), std::string::npos);
}

// In a single row without a width to share all members are asked for their ideal one.
TEST(Negotiation, OfSeveralMembersWithoutAWidthIsIdeal) {
  const View inner = row({flexible(10, 40), flexible(10, 30)});
  FrameNode free;
  free.width.ideal = 1000;
  const View rows = wholeRows(HorizontalAlignment::leading, {0},
                              {vstack(HorizontalAlignment::leading, 0, {inner})});
  const View choice = firstThatFits(FitAxes::horizontal, {rows, emptyView()});
  EXPECT_NE(dumpOf(choice, {70, 20}).find("hstack"), std::string::npos);
  EXPECT_EQ(dumpOf(choice, {69, 20}).find("hstack"), std::string::npos);
}

TEST(Negotiation, OfColumnsIsThatOfRowsOnTheirSide) {
  FrameNode high = fillingFrame();
  const View column = vstack(HorizontalAlignment::leading, 4,
                             {word("ab"), circle(1).frame(high), circle(2).frame(high)});
  const LaidOutView laid = laidOut(column, {50, 60});
  EXPECT_EQ(laid.children[0].frame, (Rect{{0, 0}, {10, 12}}));
  EXPECT_EQ(laid.children[1].frame, (Rect{{0, 16}, {50, 20}}));
  EXPECT_EQ(laid.children[2].frame, (Rect{{0, 40}, {50, 20}}));
}

TEST(Negotiation, OfAChoiceLooksAtTheOtherDimensionAsItIsOffered) {
  // At this width the text takes two lines, which are too high; its ideal single line is not.
  const View paragraph = text("one two", {{10}, Truncation::tail, 1, 3});
  const View choice = firstThatFits(FitAxes::vertical, {paragraph, word("x")});
  EXPECT_NE(dumpOf(choice, {35, 12}).find("\"one two\""), std::string::npos);
  EXPECT_NE(dumpOf(choice, {34, 12}).find("\"x\"\n"), std::string::npos);
  EXPECT_NE(dumpOf(choice, {34, 24}).find("\"one\" / \"two\""), std::string::npos);
}

TEST(Negotiation, NeverMakesANegativeSize) {
  const LaidOutView laid = laidOut(fixed(10).padding(-20), {50, 50});
  EXPECT_EQ(laid.frame.size, (Size{0, 0}));
  const LaidOutView overlapping = laidOut(row({fixed(10), fixed(10)}, -100), {50, 50});
  EXPECT_EQ(overlapping.frame.size, (Size{0, 10}));
}

}  // namespace
}  // namespace lanternfold
