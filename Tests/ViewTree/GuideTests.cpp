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
