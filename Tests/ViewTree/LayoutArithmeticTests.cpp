#include <algorithm>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "ViewTree/LayoutArithmetic.h"

namespace lanternfold {
namespace {

using Offers = std::vector<double>;

/// A member that takes what it is offered between two bounds.
struct Member {
  double minimum = 0;
  double maximum = unlimited;
  double priority = 0;
};

Member fixed(double length) { return {length, length, 0}; }

Offers offersOf(double available, double spacing, const std::vector<Member>& members) {
  std::vector<StackMember> asked;
  for (const Member& member : members) {
    asked.push_back({member.priority, member.minimum, member.maximum});
  }
  return stackOffers(available, spacing, asked, [&](std::size_t member, double offer) {
    return std::clamp(offer, members[member].minimum, members[member].maximum);
  });
}

TEST(StackOffers, ServeTheLeastFlexibleMemberFirst) {
  // The fixed member is offered its half first, although it stands last; the other gets the rest.
  EXPECT_EQ(offersOf(100, 0, {{}, fixed(18)}), (Offers{82, 50}));
}

TEST(StackOffers, AreEqualAmongEquals) {
  EXPECT_EQ(offersOf(90, 0, {{}, {}, {}}), (Offers{30, 30, 30}));
}

TEST(StackOffers, TakeTheSpacingOffBeforeSharing) {
  EXPECT_EQ(offersOf(100, 10, {{}, {}}), (Offers{45, 45}));
}

TEST(StackOffers, AddANegativeSpacingBeforeSharing) {
  EXPECT_EQ(offersOf(100, -10, {{}, {}}), (Offers{55, 55}));
}

TEST(StackOffers, GiveWhatAShortMemberLeavesToTheOthers) {
  EXPECT_EQ(offersOf(90, 0, {{0, 10}, {0, 500}, {0, 400}}), (Offers{30, 40, 40}));
}

TEST(StackOffers, ServeHigherPrioritiesFirstAndKeepTheOthersMinimum) {
  EXPECT_EQ(offersOf(100, 0, {{20, unlimited}, {0, 90, 1}}), (Offers{20, 80}));
}

TEST(StackOffers, ServePrioritiesOneAfterTheOther) {
  EXPECT_EQ(offersOf(100, 0, {{5, unlimited, -1}, {10, 20, 0}, {0, 40, 2}, {30, unlimited, 0}}),
            (Offers{5, 27.5, 55, 35}));
}

TEST(StackOffers, AreNeverNegative) { EXPECT_EQ(offersOf(10, 0, {fixed(30), {}}), (Offers{5, 0})); }

TEST(StackOffers, StayUnlimitedForAllMembersOfAnUnlimitedStack) {
  EXPECT_EQ(offersOf(unlimited, 5, {{}, {}}), (Offers{unlimited, unlimited}));
}

TEST(StackOffers, OfNoMembersAreNone) { EXPECT_TRUE(offersOf(100, 5, {}).empty()); }

TEST(StackOffers, OfMembersThatAreAlwaysUnlimitedAreMadeAllTheSame) {
  EXPECT_EQ(offersOf(100, 0, {{unlimited, unlimited}, fixed(20)}).size(), 2U);
}

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

using Heights = std::vector<double>;

/// Rows of so many lines each, 10 high, of which they show as many as fit, at least one.
Heights heightsOf(std::optional<double> available, double spacing, const std::vector<int>& lines) {
  return wholeRowHeights(
      available, spacing, lines.size(), [&](std::size_t row, std::optional<double> offer) {
        const int most = lines[row];
        return 10.0 * (offer ? std::clamp(static_cast<int>(*offer / 10), 1, most) : most);
      });
}

TEST(WholeRowHeights, AreIdealWhereTheyFit) {
  EXPECT_EQ(heightsOf(65, 5, {2, 4}), (Heights{20, 40}));
  EXPECT_EQ(heightsOf(std::nullopt, 5, {2, 4}), (Heights{20, 40}));
  EXPECT_EQ(heightsOf(unlimited, 5, {2, 4}), (Heights{20, 40}));
}

TEST(WholeRowHeights, AreEqualAmongRowsThatNeedMore) {
  EXPECT_EQ(heightsOf(75, 5, {9, 1, 9}), (Heights{30, 10, 20}));
  EXPECT_EQ(heightsOf(80, 5, {9, 1, 9}), (Heights{30, 10, 30}));
}

TEST(WholeRowHeights, AreThoseOfAsManyRowsAsFitAtTheLeastTheyTake) {
  EXPECT_EQ(heightsOf(40, 5, {9, 9, 9}), (Heights{10, 10, 10}));
  EXPECT_EQ(heightsOf(39, 5, {9, 9, 9}), (Heights{20, 10}));
}

TEST(WholeRowHeights, AlwaysHaveTheFirst) {
  EXPECT_EQ(heightsOf(3, 5, {9, 9}), Heights{10});
  EXPECT_EQ(heightsOf(0, 5, {9, 9}), Heights{10});
  EXPECT_TRUE(heightsOf(3, 5, {}).empty());
}

TEST(WholeRowHeights, AskHardlyForRowsThatHaveNoRoom) {
  int asked = 0;
  const auto counted = [&](std::size_t, std::optional<double>) {
    ++asked;
    return 10.0;
  };
  EXPECT_EQ(wholeRowHeights(35, 0, 10'000, counted).size(), 3U);
  EXPECT_LT(asked, 100);
}

TEST(WholeRowHeights, OfThousandsOfRowsAreFoundInFewQuestions) {
  std::size_t asked = 0;
  const auto counted = [&](std::size_t, std::optional<double> offer) {
    ++asked;
    return std::clamp(offer.value_or(20), 1.0, 20.0);
  };
  EXPECT_EQ(wholeRowHeights(15'000, 0, 10'000, counted).size(), 10'000U);
  EXPECT_LT(asked, 150'000U);
}

TEST(FittingInsets, ShrinkInProportionWhenTheyDoNotFit) {
  EXPECT_EQ(fittingInsets(2, 2, 10), (std::pair{2.0, 2.0}));
  EXPECT_EQ(fittingInsets(3, 1, 2), (std::pair{1.5, 0.5}));
  EXPECT_EQ(fittingInsets(3, 1, 0), (std::pair{0.0, 0.0}));
  EXPECT_EQ(fittingInsets(3, 1, std::nullopt), (std::pair{3.0, 1.0}));
}

}  // namespace
}  // namespace lanternfold
