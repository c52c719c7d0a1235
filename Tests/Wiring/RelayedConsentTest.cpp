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

}  // namespace
}  // namespace lanternfold
