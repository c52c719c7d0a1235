#include <algorithm>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "ViewTree/LayoutArithmetic.h"

namespace lanternfold {
namespace {

using Offers = std::vector<std::optional<double>>;

/// A member that takes what it is offered between two bounds.
StackMember flexible(double minimum, double ideal, double maximum, double priority = 0) {
  return {priority, minimum, maximum, [=](std::optional<double> offer) {
            return offer ? std::clamp(*offer, minimum, maximum) : ideal;
          }};
}

StackMember fixed(double length) { return flexible(length, length, length); }

TEST(StackOffers, AskForIdealLengthsWithoutABound) {
  EXPECT_EQ(stackOffers(std::nullopt, 5, {fixed(10), flexible(0, 50, unlimited)}),
            (Offers{std::nullopt, std::nullopt}));
}

TEST(StackOffers, ServeTheLeastFlexibleMemberFirst) {
  // The fixed member is offered its half first, although it stands last; the other gets the rest.
  EXPECT_EQ(stackOffers(100, 0, {flexible(0, 80, unlimited), fixed(18)}), (Offers{82, 50}));
}

TEST(StackOffers, TakeTheSpacingOffBeforeSharing) {
  EXPECT_EQ(stackOffers(100, 10, {flexible(0, 1, unlimited), flexible(0, 1, unlimited)}),
            (Offers{45, 45}));
}

TEST(StackOffers, GiveWhatAShortMemberLeavesToTheOthers) {
  EXPECT_EQ(stackOffers(90, 0, {flexible(0, 10, 10), flexible(0, 500, 500), flexible(0, 400, 400)}),
            (Offers{30, 40, 40}));
}

TEST(StackOffers, ServeHigherPrioritiesFirstAndKeepTheOthersMinimum) {
  EXPECT_EQ(stackOffers(100, 0, {flexible(20, 80, unlimited), flexible(0, 90, 90, 1)}),
            (Offers{20, 80}));
}

TEST(StackOffers, AreNeverNegative) {
  EXPECT_EQ(stackOffers(10, 0, {fixed(30), flexible(0, 5, unlimited)}), (Offers{5, 0}));
}

TEST(StackOffers, StayUnlimitedForAllMembersOfAnUnlimitedStack) {
  EXPECT_EQ(stackOffers(unlimited, 5, {flexible(0, 1, unlimited), flexible(0, 1, unlimited)}),
            (Offers{unlimited, unlimited}));
}

TEST(StackOffers, OfNoMembersAreNone) { EXPECT_TRUE(stackOffers(100, 5, {}).empty()); }

TEST(FittingSpacing, ShrinksWhenTheGapsAloneWouldOverflow) {
  EXPECT_EQ(fittingSpacing(5, 3, 100), 5);
  EXPECT_EQ(fittingSpacing(5, 3, 4), 2);
  EXPECT_EQ(fittingSpacing(5, 3, 0), 0);
  EXPECT_EQ(fittingSpacing(5, 3, std::nullopt), 5);
  EXPECT_EQ(fittingSpacing(-1.5, 3, 4), -1.5);
}

FrameLength bounds(std::optional<double> minimum, std::optional<double> ideal,
                   std::optional<double> maximum) {
  return {std::nullopt, minimum, ideal, maximum};
}

TEST(FrameExtent, OfAFixedFrameIsItsLength) {
  const FrameLength frame{18, std::nullopt, std::nullopt, std::nullopt};
  EXPECT_EQ(frameOffer(frame, 500), 18);
  EXPECT_EQ(frameExtent(frame, 500, 30), 18);
}

TEST(FrameExtent, WithoutBoundsIsThatOfTheChild) {
  EXPECT_EQ(frameOffer({}, 70), 70);
  EXPECT_EQ(frameExtent({}, 70, 30), 30);
  EXPECT_EQ(frameExtent({}, std::nullopt, 30), 30);
}

TEST(FrameExtent, WithAnUnlimitedMaximumIsAllThatIsOffered) {
  const FrameLength frame = bounds(std::nullopt, std::nullopt, unlimited);
  EXPECT_EQ(frameExtent(frame, 70, 30), 70);
  EXPECT_EQ(frameExtent(frame, std::nullopt, 30), 30);
}

TEST(FrameExtent, StaysBetweenItsBounds) {
  const FrameLength frame = bounds(20, std::nullopt, 60);
  EXPECT_EQ(frameOffer(frame, 10), 20);
  EXPECT_EQ(frameExtent(frame, 10, 5), 20);
  EXPECT_EQ(frameOffer(frame, 90), 60);
  EXPECT_EQ(frameExtent(frame, 90, 90), 60);
}

TEST(FrameExtent, IsIdealWhenAskedForTheIdeal) {
  const FrameLength frame = bounds(std::nullopt, 180, std::nullopt);
  EXPECT_EQ(frameOffer(frame, std::nullopt), 180);
  EXPECT_EQ(frameExtent(frame, std::nullopt, 180), 180);
}

TEST(FrameExtent, WithAMinimumAloneIsNoLargerThanItsChild) {
  const FrameLength frame = bounds(20, std::nullopt, std::nullopt);
  EXPECT_EQ(frameExtent(frame, 90, 30), 30);
  EXPECT_EQ(frameExtent(frame, 25, 30), 25);
  EXPECT_EQ(frameExtent(frame, 10, 30), 20);
}

TEST(FrameExtent, WithAMaximumAloneIsNoSmallerThanItsChild) {
  const FrameLength frame = bounds(std::nullopt, std::nullopt, 60);
  EXPECT_EQ(frameExtent(frame, 10, 30), 30);
  EXPECT_EQ(frameExtent(frame, 40, 30), 40);
  EXPECT_EQ(frameExtent(frame, 90, 90), 60);
}

TEST(FrameExtent, OfAnotherDimensionIsThatOfTheChildHoweverLittleIsOffered) {
  EXPECT_EQ(frameExtent({}, 0, 30), 30);
  EXPECT_EQ(frameExtent(bounds(std::nullopt, 40, std::nullopt), 0, 30), 30);
}

TEST(PaddedLength, OfWhatTakesAllIsExactlyWhatIsOffered) {
  for (double outer = 0; outer < 60; outer += 0.1) {
    const auto [before, after] = fittingInsets(13.1, 8.3, outer);
    const double inner = std::max(0.0, outer - before - after);
    ASSERT_EQ(paddedLength(inner, {before, after}, inner, outer), outer);
  }
  EXPECT_EQ(paddedLength(4, {1, 2}, 5, 8), 7);
  EXPECT_EQ(paddedLength(4, {1, 2}, std::nullopt, std::nullopt), 7);
}

/// A row of lines 10 high each, of which it shows as many as fit, at least one.
RowHeight linesOf(int count) {
  return [count](std::optional<double> offer) {
    const int shown = offer ? std::clamp(static_cast<int>(*offer / 10), 1, count) : count;
    return 10.0 * shown;
  };
}

std::vector<double> rowHeights(std::optional<double> available, double spacing,
                               const std::vector<RowHeight>& rows) {
  std::vector<double> heights = wholeRowOffers(available, spacing, rows);
  for (std::size_t row = 0; row < heights.size(); ++row) heights[row] = rows[row](heights[row]);
  return heights;
}

using Heights = std::vector<double>;

TEST(WholeRowOffers, AreIdealWhereTheyFit) {
  const std::vector<RowHeight> rows = {linesOf(2), linesOf(4)};
  EXPECT_EQ(wholeRowOffers(65, 5, rows), (Heights{20, 40}));
  EXPECT_EQ(wholeRowOffers(std::nullopt, 5, rows), (Heights{20, 40}));
  EXPECT_EQ(wholeRowOffers(unlimited, 5, rows), (Heights{20, 40}));
}

TEST(WholeRowOffers, AreEqualAmongRowsThatNeedMore) {
  EXPECT_EQ(rowHeights(75, 5, {linesOf(9), linesOf(1), linesOf(9)}), (Heights{30, 10, 20}));
  EXPECT_EQ(rowHeights(80, 5, {linesOf(9), linesOf(1), linesOf(9)}), (Heights{30, 10, 30}));
}

TEST(WholeRowOffers, AreForAsManyRowsAsFitAtTheLeastTheyTake) {
  EXPECT_EQ(rowHeights(40, 5, {linesOf(9), linesOf(9), linesOf(9)}), (Heights{10, 10, 10}));
  EXPECT_EQ(rowHeights(39, 5, {linesOf(9), linesOf(9), linesOf(9)}), (Heights{20, 10}));
}

TEST(WholeRowOffers, GoToTheFirstRowInAnyCase) {
  EXPECT_EQ(wholeRowOffers(3, 5, {linesOf(9), linesOf(9)}), Heights{3});
  EXPECT_TRUE(wholeRowOffers(3, 5, {}).empty());
}

TEST(WholeRowOffers, HardlyAskRowsThatHaveNoRoom) {
  int asked = 0;
  const RowHeight counted = [&](std::optional<double>) {
    ++asked;
    return 10.0;
  };
  EXPECT_EQ(wholeRowOffers(35, 0, std::vector<RowHeight>(10'000, counted)).size(), 3U);
  EXPECT_LT(asked, 100);
}

TEST(FittingInsets, ShrinkInProportionWhenTheyDoNotFit) {
  EXPECT_EQ(fittingInsets(2, 2, 10), (std::pair{2.0, 2.0}));
  EXPECT_EQ(fittingInsets(3, 1, 2), (std::pair{1.5, 0.5}));
  EXPECT_EQ(fittingInsets(3, 1, 0), (std::pair{0.0, 0.0}));
  EXPECT_EQ(fittingInsets(3, 1, std::nullopt), (std::pair{3.0, 1.0}));
}

TEST(AlignedOffset, PlacesAtTheBeginningMiddleOrEnd) {
  EXPECT_EQ(alignedOffset(HorizontalAlignment::leading, 100, 20), 0);
  EXPECT_EQ(alignedOffset(HorizontalAlignment::centre, 100, 20), 40);
  EXPECT_EQ(alignedOffset(HorizontalAlignment::trailing, 100, 20), 80);
  EXPECT_EQ(alignedOffset(VerticalAlignment::bottom, 100, 120), -20);
}

}  // namespace
}  // namespace lanternfold
