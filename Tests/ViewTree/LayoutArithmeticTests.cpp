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
