#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "Support/OptionSet.h"

namespace lanternfold {
namespace {

class Toppings : public OptionSet<Toppings> {
 public:
  using OptionSet::OptionSet;

  static constexpr Toppings basil() { return Toppings(1); }
  static constexpr Toppings olives() { return Toppings(2); }
  static constexpr Toppings capers() { return Toppings(4); }
};

constexpr Toppings basilAndOlives{Toppings::basil(), Toppings::olives()};
constexpr Toppings olivesAndCapers{Toppings::olives(), Toppings::capers()};

TEST(OptionSet, IsEmptyByDefaultAndFromAnEmptyList) {
  EXPECT_TRUE(Toppings().isEmpty());
  EXPECT_TRUE(Toppings({}).isEmpty());
  EXPECT_EQ(Toppings().rawValue(), 0);
  EXPECT_FALSE(Toppings::basil().isEmpty());
}

TEST(OptionSet, IsMadeFromAListOfItsMembers) {
  EXPECT_EQ(basilAndOlives.rawValue(), 3);
  EXPECT_EQ((Toppings{Toppings::capers()}).rawValue(), 4);
  EXPECT_EQ((Toppings{Toppings::basil(), Toppings::basil()}).rawValue(), 1);
}

TEST(OptionSet, KeepsBitsWithoutAName) {
  constexpr auto smallest = std::numeric_limits<std::int64_t>::min();
  EXPECT_EQ(Toppings(1024).rawValue(), 1024);
  EXPECT_EQ(Toppings(smallest).rawValue(), smallest);
  EXPECT_TRUE(Toppings(-1).contains(Toppings(1024)));
}

TEST(OptionSet, ComputesTheFourSetOperations) {
  EXPECT_EQ(basilAndOlives.unionWith(olivesAndCapers).rawValue(), 7);
  EXPECT_EQ(basilAndOlives.intersection(olivesAndCapers), Toppings::olives());
  EXPECT_EQ(basilAndOlives.symmetricDifference(olivesAndCapers).rawValue(), 5);
  EXPECT_EQ(basilAndOlives.subtracting(olivesAndCapers), Toppings::basil());
}

TEST(OptionSet, SubtractsNothingThatIsNotThere) {
  EXPECT_EQ(Toppings::basil().subtracting(Toppings::capers()), Toppings::basil());
}

TEST(OptionSet, ChangesInPlace) {
  Toppings set = basilAndOlives;
  set.formUnion(Toppings::capers());
  EXPECT_EQ(set.rawValue(), 7);
  set.formIntersection(olivesAndCapers);
  EXPECT_EQ(set, olivesAndCapers);
  set.formSymmetricDifference(basilAndOlives);
  EXPECT_EQ(set.rawValue(), 5);
  set.subtract(Toppings::basil());
  EXPECT_EQ(set, Toppings::capers());
  set.insert(Toppings::olives());
  EXPECT_EQ(set, olivesAndCapers);
  set.remove(Toppings::capers());
  EXPECT_EQ(set, Toppings::olives());
}

TEST(OptionSet, ContainsWhatItHoldsAndAlwaysTheEmptySet) {
  EXPECT_TRUE(basilAndOlives.contains(Toppings::basil()));
  EXPECT_TRUE(basilAndOlives.contains(basilAndOlives));
  EXPECT_FALSE(basilAndOlives.contains(olivesAndCapers));
  EXPECT_TRUE(basilAndOlives.contains({}));
  EXPECT_TRUE(Toppings().contains({}));
  EXPECT_FALSE(Toppings().contains(Toppings::basil()));
}

TEST(OptionSet, ComparesAsSubsetsAndSupersets) {
  EXPECT_TRUE(Toppings::basil().isSubset(basilAndOlives));
  EXPECT_TRUE(basilAndOlives.isSubset(basilAndOlives));
  EXPECT_FALSE(basilAndOlives.isSubset(Toppings::basil()));
  EXPECT_TRUE(basilAndOlives.isSuperset(Toppings::basil()));
  EXPECT_FALSE(Toppings::basil().isSuperset(basilAndOlives));
}

TEST(OptionSet, TellsWhetherTwoSetsShareAMember) {
  EXPECT_TRUE(Toppings::basil().isDisjoint(olivesAndCapers));
  EXPECT_FALSE(basilAndOlives.isDisjoint(olivesAndCapers));
  EXPECT_TRUE(Toppings().isDisjoint(Toppings()));
}

TEST(OptionSet, IsEqualByRawValue) {
  EXPECT_EQ(Toppings(3), basilAndOlives);
  EXPECT_NE(Toppings(3), Toppings(4));
}

}  // namespace
}  // namespace lanternfold
