// The lines by which views are aligned with each other.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/ViewTree/LaidOut.h"
#include "ViewTree/Guides.h"

namespace lanternfold {
namespace {

View box(double width, double height) { return circle(1).frame(width, height); }

/// The frames of the children of `view`, which is offered 100 by 100, counted from its own corner.
std::vector<Rect> framesIn(const View& view) {
  const LaidOutView laid = laidOut(view, {100, 100});
  std::vector<Rect> frames;
  for (const LaidOutView& child : laid.children) {
    frames.push_back(
        {{child.frame.left() - laid.frame.left(), child.frame.top() - laid.frame.top()},
         child.frame.size});
  }
  return frames;
}

using Frames = std::vector<Rect>;

TEST(Guides, OfARowAreItsEdgesAndMiddle) {
  const auto tops = [](VerticalAlignment alignment) {
    const Frames frames = framesIn(hstack(alignment, 0, {box(10, 20), box(10, 8)}));
    return std::vector<double>{frames[0].top(), frames[1].top()};
  };
  EXPECT_EQ(tops(VerticalAlignment::top), (std::vector<double>{0, 0}));
  EXPECT_EQ(tops(VerticalAlignment::centre), (std::vector<double>{0, 6}));
  EXPECT_EQ(tops(VerticalAlignment::bottom), (std::vector<double>{0, 12}));
}

TEST(Guides, ThatAreMovedPushAViewOutAndTheRowGrows) {
  const View row = hstack(VerticalAlignment::top, 0,
                          {box(10, 20), box(10, 20).alignmentGuide(VerticalAlignment::top, 5)});
  EXPECT_EQ(framesIn(row), (Frames{{{0, 5}, {10, 20}}, {{10, 0}, {10, 20}}}));
  EXPECT_EQ(laidOut(row, {100, 100}).frame.size, (Size{20, 25}));
}

TEST(Guides, MovedUpwardsPushAViewDown) {
  const View row = hstack(VerticalAlignment::bottom, 0,
                          {box(10, 20), box(10, 20).alignmentGuide(VerticalAlignment::bottom, -8)});
  EXPECT_EQ(framesIn(row), (Frames{{{0, 0}, {10, 20}}, {{10, 8}, {10, 20}}}));
  EXPECT_EQ(laidOut(row, {100, 100}).frame.size, (Size{20, 28}));
}

TEST(Guides, OfAColumnMoveAcross) {
  const View column =
      vstack(HorizontalAlignment::trailing, 0,
             {box(30, 10), box(10, 10).alignmentGuide(HorizontalAlignment::trailing, -4)});
  EXPECT_EQ(framesIn(column), (Frames{{{0, 0}, {30, 10}}, {{24, 10}, {10, 10}}}));
  EXPECT_EQ(laidOut(column, {100, 100}).frame.size, (Size{34, 20}));
}

TEST(Guides, OfLayersMoveInBothDirections) {
  const View layers =
      zstack(topLeading, {box(30, 30), box(10, 10)
                                           .alignmentGuide(HorizontalAlignment::leading, 3)
                                           .alignmentGuide(VerticalAlignment::top, -2)});
  EXPECT_EQ(framesIn(layers), (Frames{{{3, 0}, {30, 30}}, {{0, 2}, {10, 10}}}));
  EXPECT_EQ(laidOut(layers, {100, 100}).frame.size, (Size{33, 30}));
}

TEST(Guides, OfAnotherNameAreNotAskedFor) {
  const View row = hstack(VerticalAlignment::top, 0,
                          {box(10, 20), box(10, 20).alignmentGuide(VerticalAlignment::bottom, 5)});
  EXPECT_EQ(framesIn(row), (Frames{{{0, 0}, {10, 20}}, {{10, 0}, {10, 20}}}));
}

TEST(Guides, ComeThroughModifiersAndMoveWithThem) {
  const View moved =
      box(10, 10).alignmentGuide(VerticalAlignment::centre, 2).padding({3, 0, 1, 0}).opacity(1, 1);
  // The guide stands at 3 + 5 + 2 of 14.
  const View row = hstack(VerticalAlignment::centre, 0, {box(10, 20), moved});
  EXPECT_EQ(framesIn(row), (Frames{{{0, 0}, {10, 20}}, {{10, 0}, {10, 14}}}));
}

TEST(Guides, AreNotMovedByAnOffset) {
  const View row =
      hstack(VerticalAlignment::top, 0,
             {box(10, 20), box(10, 20).alignmentGuide(VerticalAlignment::top, 5).offset(0, 50)});
  EXPECT_EQ(framesIn(row), (Frames{{{0, 5}, {10, 20}}, {{10, 0}, {10, 20}}}));
}

TEST(Guides, OfAStackAreItsOwnAndNotItsChildren) {
  const View inner = vstack(HorizontalAlignment::leading, 0,
                            {box(10, 20).alignmentGuide(VerticalAlignment::top, 5)});
  EXPECT_EQ(framesIn(hstack(VerticalAlignment::top, 0, {box(10, 20), inner})),
            (Frames{{{0, 0}, {10, 20}}, {{10, 0}, {10, 20}}}));
}

TEST(Guides, OfWhatStandsBehindAreThoseOfTheContent) {
  const View content = box(10, 10).alignmentGuide(VerticalAlignment::top, 4);
  EXPECT_EQ(framesIn(View(content).background(box(10, 2), topLeading)),
            (Frames{{{0, 4}, {10, 2}}, {{0, 0}, {10, 10}}}));
}

/// 0.9 of the size above its baseline.
View letters(double size) { return text("ab", {{size}}); }

TEST(FirstTextBaseline, AlignsTextsOfDifferentSizes) {
  const View row =
      hstack(VerticalAlignment::firstTextBaseline, 0, {letters(20), letters(10), box(4, 15)});
  // The baseline stands at 18; a view without a text stands on it.
  EXPECT_EQ(framesIn(row), (Frames{{{0, 0}, {20, 24}}, {{20, 9}, {10, 12}}, {{30, 3}, {4, 15}}}));
  EXPECT_EQ(laidOut(row, {100, 100}).frame.size, (Size{34, 24}));
}

TEST(FirstTextBaseline, OfATightLineIsHigher) {
  const View tight = text("ab", {{10, FontWeight::regular, FontLeading::tight}});
  EXPECT_EQ(framesIn(hstack(VerticalAlignment::firstTextBaseline, 0, {letters(10), tight})),
            (Frames{{{0, 0}, {10, 12}}, {{10, 1}, {10, 10}}}));
}

TEST(FirstTextBaseline, OfSeveralLinesIsThatOfTheFirst) {
  const View paragraph = text("ab cd", {{10}, Truncation::tail, 1, 2}).frame(10, 24);
  EXPECT_EQ(framesIn(hstack(VerticalAlignment::firstTextBaseline, 0, {letters(20), paragraph})),
            (Frames{{{0, 0}, {20, 24}}, {{20, 9}, {10, 24}}}));
}

TEST(FirstTextBaseline, OfAShrunkenTextStandsWhereItIsPainted) {
  // A font of 5 in a line of 12: the line of 6 begins at 3, its baseline 4.5 below.
  const View shrunken = text("abcd", {{10}, Truncation::tail, 0.5}).frame(10, 12);
  EXPECT_EQ(framesIn(hstack(VerticalAlignment::firstTextBaseline, 0, {letters(10), shrunken}))
                .back()
                .top(),
            1.5);
}

TEST(FirstTextBaseline, OfStacksIsThatOfTheTopmostText) {
  const View column =
      vstack(HorizontalAlignment::leading, 1, {box(5, 6), letters(10), letters(10)});
  // 6 and 1 above the text, 9 to its baseline: 16 of 18 are wanted.
  EXPECT_EQ(
      framesIn(hstack(VerticalAlignment::firstTextBaseline, 0, {letters(20), column})).back().top(),
      2);
  const View layers = zstack(topLeading, {letters(20), letters(10)});
  EXPECT_EQ(
      framesIn(hstack(VerticalAlignment::firstTextBaseline, 0, {letters(20), layers})).back().top(),
      9);
}

TEST(FirstTextBaseline, ComesThroughModifiersRowsAndGrids) {
  for (const View& view :
       {letters(10).padding({3, 0, 0, 0}).foreground(Colour::white()),
        wholeRows(HorizontalAlignment::leading, {0}, {letters(10)}).padding({3, 0, 0, 0}),
        wholeGrid({1, 0, 0, topLeading}, {letters(10)}).padding({3, 0, 0, 0}),
        firstThatFits(FitAxes::both, {letters(10).padding({3, 0, 0, 0})}),
        letters(10).background(letters(40)).padding({3, 0, 0, 0})}) {
    EXPECT_EQ(
        framesIn(hstack(VerticalAlignment::firstTextBaseline, 0, {letters(20), view})).back().top(),
        6);
  }
}

TEST(FirstTextBaseline, MayBeMoved) {
  const View moved = letters(20).alignmentGuide(VerticalAlignment::firstTextBaseline, -3);
  EXPECT_EQ(framesIn(hstack(VerticalAlignment::firstTextBaseline, 0, {letters(20), moved})),
            (Frames{{{0, 0}, {20, 24}}, {{20, 3}, {20, 24}}}));
}

TEST(Guides, BetweenUnlimitedLengthsStayNumbers) {
  const Dimensions endless{{unlimited, unlimited}, {}};
  const GuidePosition middle = positionOf(VerticalAlignment::centre, endless);
  SharedGuide shared;
  shared.add(middle);
  EXPECT_EQ(shared.extent(), unlimited);
  EXPECT_EQ(beginningFor(middle, shared.position()), 0);
}

TEST(Guides, ThatNobodySharesTakeNoRoom) {
  EXPECT_EQ(SharedGuide().extent(), 0);
  EXPECT_EQ(SharedGuide().position(), 0);
}

}  // namespace
}  // namespace lanternfold
