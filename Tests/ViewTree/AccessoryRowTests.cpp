// A content and its accessories in every width.
#include <string>

#include <gtest/gtest.h>

#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/Elements.h"
#include "ViewTree/Layout.h"

namespace lanternfold {
namespace {

constexpr AccessoryRowNode row{VerticalAlignment::centre, 5, 60, 180};

/// Fills all the width there is.
View content() {
  FrameNode whole;
  whole.width.maximum = unlimited;
  return text("a", {{10}}).frame(whole);
}

View threeParts() {
  return accessoryRow(row, circle(1).frame(18, 18), content(), circle(1).frame(89, 42));
}

/// The parts' places and widths as "0+18 23+180 208+89".
std::string partsOf(const View& view, Size size) {
  const MetricTextMeasurer measurer;
  const LaidOutView laidOut = layOut(view, size, {measurer, ""});
  std::string parts;
  for (const LaidOutView& part : laidOut.children) {
    const auto number = [](double length) { return std::to_string(static_cast<int>(length)); };
    parts += (parts.empty() ? "" : " ") + number(part.frame.left() - laidOut.frame.left()) + '+' +
             number(part.frame.size.width);
  }
  return parts;
}

std::string partsAt(double width) { return partsOf(threeParts(), {width, 100}); }

TEST(AccessoryRow, ShowsAllPartsWhereTheContentHasEnoughBesideThem) {
  EXPECT_EQ(partsAt(297), "0+18 23+180 208+89");
  EXPECT_EQ(partsAt(400), "0+18 23+283 311+89");
}

TEST(AccessoryRow, LeavesOutTheTrailingOneFirst) {
  EXPECT_EQ(partsAt(296), "0+18 23+180");
  EXPECT_EQ(partsAt(83), "0+18 23+60");
}

TEST(AccessoryRow, LeavesOutBothWhereTheContentWouldHaveTooLittle) {
  EXPECT_EQ(partsAt(82), "0+60");
  EXPECT_EQ(partsAt(30), "0+30");
  EXPECT_EQ(partsAt(0), "0+0");
}

TEST(AccessoryRow, NeverMakesTheContentNarrowerInMoreRoom) {
  const MetricTextMeasurer measurer;
  double before = 0;
  for (int width = 0; width <= 400; ++width) {
    const LaidOutView laidOut =
        layOut(threeParts(), {static_cast<double>(width), 100}, {measurer, ""});
    double now = 0;
    for (const LaidOutView& part : laidOut.children) {
      if (std::holds_alternative<FrameNode>(part.node) &&
          !std::get<FrameNode>(part.node).width.fixed)
        now = part.frame.size.width;
    }
    ASSERT_GE(now, before) << width;
    ASSERT_LE(laidOut.frame.size.width, width);
    before = now;
  }
}

TEST(AccessoryRow, GivesTheContentAllThereIsWithoutATrailingAccessory) {
  const View view = accessoryRow(row, circle(1).frame(18, 18), content(), emptyView());
  EXPECT_EQ(partsOf(view, {400, 100}), "0+18 23+377");
}

// Meters that are too high for their card leave no gap behind.
TEST(AccessoryRow, LeavesNoSpaceForAnAccessoryThatTakesNoRoom) {
  std::vector<View> choices;
  choices.push_back(circle(1).frame(89, 42));
  choices.push_back(emptyView());
  const View view = accessoryRow(row, circle(1).frame(18, 18), content(),
                                 firstThatFits(FitAxes::vertical, std::move(choices)));
  EXPECT_EQ(partsOf(view, {400, 42}), "0+18 23+283 311+89");
  EXPECT_EQ(partsOf(view, {400, 41}), "0+18 23+377");
}

TEST(AccessoryRow, AlignsItsPartsAndIsAsHighAsTheHighest) {
  const MetricTextMeasurer measurer;
  const LaidOutView laidOut = layOut(threeParts(), {400, 100}, {measurer, ""});
  EXPECT_EQ(laidOut.frame, (Rect{{0, 29}, {400, 42}}));
  EXPECT_EQ(laidOut.children.front().frame.top(), 41);
}

TEST(AccessoryRow, IsAsWideAsItsPartsWithoutAnOffer) {
  const MetricTextMeasurer measurer;
  std::vector<View> only;
  only.push_back(accessoryRow(row, circle(1).frame(18, 18), text("abc", {{10}}), emptyView()));
  const LaidOutView laidOut =
      layOut(firstThatFits(FitAxes::both, std::move(only)), {400, 100}, {measurer, ""});
  EXPECT_EQ(laidOut.frame.size.width, 38);
}

TEST(AccessoryRowDeathTest, StopsTheProgramOnWidthsInTheWrongOrder) {
  EXPECT_DEATH((void)accessoryRow({VerticalAlignment::centre, 5, 60, 59}, emptyView(), content(),
                                  emptyView()),
               "a content was to have less room beside two accessories than beside one");
}

}  // namespace
}  // namespace lanternfold
