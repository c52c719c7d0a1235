// The consent as a command reads it, over a user in memory.
#include <gtest/gtest.h>

#include "Tests/Support/FakeLocationConsent.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "Wiring/RelayedConsent.h"

namespace lanternfold {
namespace {

class RelayedConsentTest : public testing::Test {
 protected:
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeLocationConsent user_{dispatch_.mainQueue()};
  RelayedConsent consent_{user_};
};

TEST_F(RelayedConsentTest, TellsTheUsersDecision) {
  for (const std::int32_t status : {0, 1, 2, 3, 4, 7}) {
    user_.setAuthorizationStatus(status);
    EXPECT_EQ(consent_.authorizationStatus(), status);
  }
}

TEST_F(RelayedConsentTest, ARequestReachesNobody) {
  const auto manager = consent_.makeLocationManager(nullptr);
  manager->requestAlwaysAuthorization();
  manager->requestWhenInUseAuthorization();
  EXPECT_TRUE(user_.requests().empty());
}

TEST_F(RelayedConsentTest, HearsOfChangesWhileTheManagerExists) {
  int changes = 0;
  auto manager = consent_.makeLocationManager([&] { ++changes; });
  user_.setAuthorizationStatus(4);
  dispatch_.advance(std::chrono::seconds(1));
  EXPECT_EQ(changes, 1);
  manager.reset();
  EXPECT_EQ(user_.managers(), 0U);
}

TEST_F(RelayedConsentTest, WhoAsksIsAskedForAsMuchAsWasRequested) {
  std::vector<bool> asked;
  consent_.setAsk([&](bool whenInUse) { asked.push_back(whenInUse); });
  const auto manager = consent_.makeLocationManager(nullptr);
  manager->requestAlwaysAuthorization();
  manager->requestWhenInUseAuthorization();
  EXPECT_EQ(asked, (std::vector<bool>{false, true}));
  EXPECT_TRUE(user_.requests().empty());
}

TEST_F(RelayedConsentTest, WhatIsToldWithholdsAndNeverReleases) {
  user_.setAuthorizationStatus(2);
  consent_.tell(3);
  EXPECT_EQ(consent_.authorizationStatus(), 2);
  user_.setAuthorizationStatus(3);
  EXPECT_EQ(consent_.authorizationStatus(), 3);
  consent_.tell(2);
  EXPECT_EQ(consent_.authorizationStatus(), 2);
  consent_.tell(4);
  EXPECT_EQ(consent_.authorizationStatus(), 3);
}

TEST_F(RelayedConsentTest, WhatIsToldIsAChangeOnce) {
  int changes = 0;
  const auto manager = consent_.makeLocationManager([&] { ++changes; });
  consent_.tell(2);
  consent_.tell(2);
  EXPECT_EQ(changes, 1);
}

TEST_F(RelayedConsentTest, AHandlerMayLetGoOfItsOwnAndOfOtherManagers) {
  std::unique_ptr<LocationManager> first;
  std::unique_ptr<LocationManager> second;
  int changes = 0;
  const auto handler = [&] {
    ++changes;
    first.reset();
    second.reset();
  };
  first = consent_.makeLocationManager(handler);
  second = consent_.makeLocationManager(handler);
  consent_.tell(1);
  EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace lanternfold
