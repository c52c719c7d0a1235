#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "Tests/ViewTree/LaidOut.h"
#include "ViewTree/HitTest.h"

namespace lanternfold {
namespace {

View pressable(std::string intent, double width, double height) {
  return button(std::move(intent), circle(1).frame(width, height));
}

/// The intent or URL at a point of `view`, which fills 100 by 100.
std::string hitAt(const View& view, Point point,
                  LayoutDirection direction = LayoutDirection::leftToRight) {
  const LaidOutView laid =
      laidOut(View(view).frame(fillingFrame(topLeading)), {100, 100}, direction);
  const LaidOutView* const hit = interactiveViewAt(laid, point);
  if (hit == nullptr) return "none";
  if (const auto* pressed = std::get_if<ButtonNode>(&hit->node)) return pressed->intent;
  return std::get<LinkNode>(hit->node).url;
}

TEST(HitTest, FindsAButtonInItsFrame) {
  const View view = pressable("press", 20, 10).padding({5, 5, 0, 0});
  EXPECT_EQ(hitAt(view, {5, 5}), "press");
  EXPECT_EQ(hitAt(view, {24.9, 14.9}), "press");
  EXPECT_EQ(hitAt(view, {25, 10}), "none");
  EXPECT_EQ(hitAt(view, {10, 15}), "none");
  EXPECT_EQ(hitAt(view, {4.9, 10}), "none");
}

TEST(HitTest, FindsOnlyOneOfTwoThatMeet) {
  const View row =
      hstack(VerticalAlignment::top, 0, {pressable("a", 10, 10), pressable("b", 10, 10)});
  EXPECT_EQ(hitAt(row, {9.9, 0}), "a");
  EXPECT_EQ(hitAt(row, {10, 0}), "b");
}

TEST(HitTest, FindsTheInnermost) {
  const View view = link("app:outer", pressable("inner", 10, 10).padding(5));
  EXPECT_EQ(hitAt(view, {10, 10}), "inner");
  EXPECT_EQ(hitAt(view, {2, 2}), "app:outer");
}

TEST(HitTest, FindsWhatIsDrawnAbove) {
  const View layers = zstack(topLeading, {pressable("below", 30, 30), pressable("above", 10, 10)});
  EXPECT_EQ(hitAt(layers, {5, 5}), "above");
  EXPECT_EQ(hitAt(layers, {15, 5}), "below");
  const View covered = pressable("content", 10, 10).background(pressable("behind", 10, 10));
  EXPECT_EQ(hitAt(covered, {5, 5}), "content");
}

TEST(HitTest, FindsAButtonWhereItsOffsetMovedIt) {
  const View moved = pressable("moved", 10, 10).offset(40, 0);
  EXPECT_EQ(hitAt(moved, {45, 5}), "moved");
  EXPECT_EQ(hitAt(moved, {5, 5}), "none");
  EXPECT_EQ(hitAt(moved, {55, 5}, LayoutDirection::rightToLeft), "moved");
}

TEST(HitTest, FindsNothingThatIsCutOff) {
  const View clipped = pressable("cut", 40, 40).frame(20, 20, topLeading).clipped(10);
  EXPECT_EQ(hitAt(clipped, {10, 10}), "cut");
  EXPECT_EQ(hitAt(clipped, {25, 10}), "none");
  EXPECT_EQ(hitAt(clipped, {1, 1}), "none");
  EXPECT_EQ(hitAt(clipped, {10, 0.5}), "cut");
}

TEST(HitTest, FindsNothingWhereThereIsNone) {
  EXPECT_EQ(hitAt(word("plain"), {5, 5}), "none");
  EXPECT_EQ(hitAt(pressable("empty", 0, 0), {0, 0}), "none");
}

}  // namespace
}  // namespace lanternfold
