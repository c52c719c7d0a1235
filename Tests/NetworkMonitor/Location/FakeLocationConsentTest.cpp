#include <gtest/gtest.h>

#include "Tests/Support/FakeLocationConsent.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using Request = FakeLocationConsent::Request;

class FakeLocationConsentTest : public testing::Test {
 protected:
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeLocationConsent consent_{dispatch_.mainQueue()};
};

TEST_F(FakeLocationConsentTest, AsksTheUserOnlyWhileNothingIsDecided) {
  const auto manager = consent_.makeLocationManager([] {});
  manager->requestAlwaysAuthorization();
  consent_.setAuthorizationStatus(2);
  manager->requestWhenInUseAuthorization();
  EXPECT_EQ(consent_.requests(), (std::vector{Request::always, Request::whenInUse}));
  EXPECT_EQ(consent_.questions(), (std::vector{Request::always}));
}

TEST_F(FakeLocationConsentTest, TellsChangesOnlyAndNeverAtOnce) {
  int changes = 0;
  const auto manager = consent_.makeLocationManager([&changes] { ++changes; });
  consent_.setAuthorizationStatus(3);
  consent_.setAuthorizationStatus(3);
  EXPECT_EQ(changes, 0);
  dispatch_.runReady();
  EXPECT_EQ(changes, 1);
}

TEST_F(FakeLocationConsentTest, TellsNothingToAManagerThatIsGone) {
  int changes = 0;
  auto manager = consent_.makeLocationManager([&changes] { ++changes; });
  consent_.setAuthorizationStatus(3);
  manager.reset();
  dispatch_.runReady();
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(consent_.managers(), 0U);
  EXPECT_EQ(consent_.managersMade(), 1U);
}

}  // namespace
}  // namespace lanternfold
