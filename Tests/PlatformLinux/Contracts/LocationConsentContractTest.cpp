// What every side of the consent's seam promises.
#include "Tests/PlatformLinux/Contracts/LocationConsentWorlds.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

template <typename World>
class LocationConsentContract : public testing::Test {
 protected:
  [[nodiscard]] LocationConsent& consent() { return world_.consent(); }
  void decide(ConsentDecision decision) { world_.decide(decision); }

  /// A manager whose handler writes down the status that it finds.
  [[nodiscard]] std::unique_ptr<LocationManager> manager() {
    return consent().makeLocationManager([this] {
      EXPECT_TRUE(world_.mainQueue().isCurrent());
      seen_.push_back(consent().authorizationStatus());
    });
  }
  [[nodiscard]] bool runUntilSeen(std::size_t count) {
    return world_.runUntil([this, count] { return seen_.size() >= count; });
  }

  static std::int32_t always() { return World::statusOf(ConsentDecision::authorizedAlways); }

  World world_;
  std::vector<std::int32_t> seen_;
};

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    if (std::is_same_v<World, LinuxConsentWorld>) return "Linux";
    return std::is_same_v<World, PortalConsentWorld> ? "Portal" : "Fake";
  }
};

using Worlds = testing::Types<LinuxConsentWorld, PortalConsentWorld, FakeConsentWorld>;
TYPED_TEST_SUITE(LocationConsentContract, Worlds, WorldNames);

TYPED_TEST(LocationConsentContract, NothingIsDeterminedAtFirst) {
  EXPECT_EQ(this->consent().authorizationStatus(), 0);
}

TYPED_TEST(LocationConsentContract, TheStatusIsThatOfTheLastDecisionWithoutAnyManager) {
  this->decide(ConsentDecision::denied);
  EXPECT_EQ(this->consent().authorizationStatus(), 2);
  this->decide(ConsentDecision::authorizedAlways);
  EXPECT_EQ(this->consent().authorizationStatus(), this->always());
  this->decide(ConsentDecision::authorizedWhenInUse);
  EXPECT_EQ(this->consent().authorizationStatus(), 4);
  this->decide(ConsentDecision::notDetermined);
  EXPECT_EQ(this->consent().authorizationStatus(), 0);
}

TYPED_TEST(LocationConsentContract, EachChangeIsOneCallOnTheMainQueue) {
  const auto manager = this->manager();
  ASSERT_NE(manager, nullptr);
  this->decide(ConsentDecision::authorizedAlways);
  ASSERT_TRUE(this->runUntilSeen(1));
  this->decide(ConsentDecision::denied);
  ASSERT_TRUE(this->runUntilSeen(2));
  this->decide(ConsentDecision::notDetermined);
  ASSERT_TRUE(this->runUntilSeen(3));
  this->world_.settle();
  EXPECT_THAT(this->seen_, ElementsAre(this->always(), 2, 0));
}

TYPED_TEST(LocationConsentContract, WhatWasDecidedBeforeIsNoChange) {
  this->decide(ConsentDecision::authorizedAlways);
  const auto manager = this->manager();
  this->world_.settle();
  EXPECT_THAT(this->seen_, IsEmpty());
}

TYPED_TEST(LocationConsentContract, TheSameDecisionAgainIsNoChange) {
  this->decide(ConsentDecision::denied);
  const auto manager = this->manager();
  this->decide(ConsentDecision::denied);
  this->world_.settle();
  EXPECT_THAT(this->seen_, IsEmpty());
  this->decide(ConsentDecision::authorizedAlways);
  ASSERT_TRUE(this->runUntilSeen(1));
  EXPECT_THAT(this->seen_, ElementsAre(this->always()));
}

TYPED_TEST(LocationConsentContract, EveryManagerHearsOfAChange) {
  const auto first = this->manager();
  const auto second = this->manager();
  this->decide(ConsentDecision::authorizedWhenInUse);
  ASSERT_TRUE(this->runUntilSeen(2));
  this->world_.settle();
  EXPECT_THAT(this->seen_, ElementsAre(4, 4));
}

TYPED_TEST(LocationConsentContract, ADestroyedManagerHearsOfNothing) {
  auto manager = this->manager();
  this->decide(ConsentDecision::denied);
  manager.reset();
  this->world_.settle();
  EXPECT_THAT(this->seen_, IsEmpty());
}

TYPED_TEST(LocationConsentContract, AManagerMayBeDestroyedByItsOwnHandler) {
  std::unique_ptr<LocationManager> manager;
  int calls = 0;
  manager = this->consent().makeLocationManager([&] {
    ++calls;
    manager.reset();
  });
  this->decide(ConsentDecision::denied);
  ASSERT_TRUE(this->world_.runUntil([&] { return calls > 0; }));
  this->decide(ConsentDecision::authorizedAlways);
  this->world_.settle();
  EXPECT_EQ(calls, 1);
}

TYPED_TEST(LocationConsentContract, ARequestAsksWhileNothingIsDecided) {
  const auto manager = this->manager();
  manager->requestWhenInUseAuthorization();
  manager->requestAlwaysAuthorization();
  EXPECT_EQ(this->world_.asked(), 2U);
  EXPECT_EQ(this->consent().authorizationStatus(), 0);
  this->world_.settle();
  EXPECT_THAT(this->seen_, IsEmpty());
}

TYPED_TEST(LocationConsentContract, ARequestDoesNothingOnceTheUserHasDecided) {
  const auto manager = this->manager();
  for (const auto decision : {ConsentDecision::denied, ConsentDecision::authorizedWhenInUse,
                              ConsentDecision::authorizedAlways}) {
    this->decide(decision);
    manager->requestWhenInUseAuthorization();
    manager->requestAlwaysAuthorization();
    EXPECT_EQ(this->consent().authorizationStatus(), TypeParam::statusOf(decision));
  }
  EXPECT_EQ(this->world_.asked(), 0U);
}

TYPED_TEST(LocationConsentContract, AnAnswerToARequestIsAChange) {
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  this->decide(ConsentDecision::authorizedAlways);
  ASSERT_TRUE(this->runUntilSeen(1));
  EXPECT_THAT(this->seen_, ElementsAre(this->always()));
}

}  // namespace
}  // namespace lanternfold
