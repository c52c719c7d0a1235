#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "NetworkMonitor/Location/LocationAuthorizationObserver.h"
#include "Tests/Support/FakeLocationConsent.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using Observer = LocationAuthorizationObserver;
using Status = Observer::AuthorizationStatus;
using Request = FakeLocationConsent::Request;

constexpr std::pair<std::int32_t, Status> table[] = {
    {0, Status::notDetermined},    {1, Status::restricted},          {2, Status::denied},
    {3, Status::authorizedAlways}, {4, Status::authorizedWhenInUse}, {-1, Status::unknown},
};

constexpr std::int32_t outsideTheTable[] = {-2,
                                            5,
                                            6,
                                            255,
                                            std::numeric_limits<std::int32_t>::min(),
                                            std::numeric_limits<std::int32_t>::max()};

TEST(AuthorizationStatusTest, HasTheRawValuesOfTheTable) {
  for (const auto& [rawValue, status] : table) {
    EXPECT_EQ(std::to_underlying(status), rawValue);
    EXPECT_EQ(Observer::fromRawValue(rawValue), status) << rawValue;
  }
}

TEST(AuthorizationStatusTest, OfMinusOneIsUnknown) {
  EXPECT_EQ(Observer::fromRawValue(-1), Status::unknown);
}

TEST(AuthorizationStatusTest, OfARawValueOutsideTheTableIsNone) {
  for (const std::int32_t rawValue : outsideTheTable) {
    EXPECT_EQ(Observer::fromRawValue(rawValue), std::nullopt) << rawValue;
  }
}

class LocationAuthorizationObserverTest : public testing::Test {
 protected:
  /// Decides, and lets every manager hear of it.
  void decide(std::int32_t status) {
    consent_.setAuthorizationStatus(status);
    dispatch_.runReady();
  }
  void recordChanges() {
    observer_->onAuthStatusChange = [this](Status status) {
      EXPECT_TRUE(dispatch_.mainQueue().isCurrent());
      heard_.push_back(status);
    };
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeLocationConsent consent_{dispatch_.mainQueue()};
  std::unique_ptr<Observer> observer_ = std::make_unique<Observer>(consent_);
  std::vector<Status> heard_;
};

TEST_F(LocationAuthorizationObserverTest, BeginsWithoutACallbackAndWithoutAManager) {
  EXPECT_FALSE(observer_->onAuthStatusChange);
  EXPECT_EQ(consent_.managersMade(), 0U);
}

TEST_F(LocationAuthorizationObserverTest, WithoutARequestTheStatusIsTheSystems) {
  for (const auto& [rawValue, status] : table) {
    decide(rawValue);
    EXPECT_EQ(observer_->currentAuthStatus(), status);
    EXPECT_EQ(Observer::currentAuthStatus(consent_), status);
  }
}

TEST_F(LocationAuthorizationObserverTest, AStatusBeyondTheTableIsUnknown) {
  for (const std::int32_t rawValue : outsideTheTable) {
    decide(rawValue);
    EXPECT_EQ(observer_->currentAuthStatus(), Status::unknown) << rawValue;
    EXPECT_EQ(Observer::currentAuthStatus(consent_), Status::unknown) << rawValue;
  }
}

TEST_F(LocationAuthorizationObserverTest, ReadingTheStatusMakesNoManagerAndAsksNobody) {
  static_cast<void>(observer_->currentAuthStatus());
  static_cast<void>(Observer::currentAuthStatus(consent_));
  EXPECT_EQ(consent_.managersMade(), 0U);
  EXPECT_TRUE(consent_.requests().empty());
}

TEST_F(LocationAuthorizationObserverTest, BeforeTheManagerExistsNoChangeIsTold) {
  recordChanges();
  decide(2);
  decide(4);
  EXPECT_TRUE(heard_.empty());
}

TEST_F(LocationAuthorizationObserverTest, TheCallbackAloneMakesNoManager) {
  recordChanges();
  EXPECT_EQ(consent_.managersMade(), 0U);
}

TEST_F(LocationAuthorizationObserverTest, EveryRequestAsksTheOneManager) {
  observer_->requestAuthorization(true);
  observer_->requestAuthorization(false);
  observer_->requestWhenInUseAuthorization();
  observer_->requestAlwaysAuthorization();
  EXPECT_EQ(consent_.requests(), (std::vector{Request::whenInUse, Request::always,
                                              Request::whenInUse, Request::always}));
  EXPECT_EQ(consent_.managersMade(), 1U);
}

TEST_F(LocationAuthorizationObserverTest, ARequestAloneTellsNothing) {
  recordChanges();
  observer_->requestWhenInUseAuthorization();
  dispatch_.runReady();
  EXPECT_TRUE(heard_.empty());
}

TEST_F(LocationAuthorizationObserverTest, AfterARequestEveryChangeIsToldOnce) {
  recordChanges();
  observer_->requestWhenInUseAuthorization();
  for (const std::int32_t rawValue : {4, 2, 3, 1, 0, 5}) decide(rawValue);
  EXPECT_EQ(heard_,
            (std::vector{Status::authorizedWhenInUse, Status::denied, Status::authorizedAlways,
                         Status::restricted, Status::notDetermined, Status::unknown}));
}

TEST_F(LocationAuthorizationObserverTest, TellsTheStatusOfTheMomentOfTheCall) {
  recordChanges();
  observer_->requestWhenInUseAuthorization();
  consent_.setAuthorizationStatus(2);
  consent_.setAuthorizationStatus(3);
  dispatch_.runReady();
  EXPECT_EQ(heard_, (std::vector{Status::authorizedAlways, Status::authorizedAlways}));
}

TEST_F(LocationAuthorizationObserverTest, AChangeWithoutACallbackDoesNothing) {
  observer_->requestAlwaysAuthorization();
  decide(3);
  recordChanges();
  decide(2);
  EXPECT_EQ(heard_, (std::vector{Status::denied}));
}

TEST_F(LocationAuthorizationObserverTest, ACallbackThatWasTakenAwayIsNotCalled) {
  recordChanges();
  observer_->requestAlwaysAuthorization();
  decide(3);
  observer_->onAuthStatusChange = nullptr;
  decide(2);
  EXPECT_EQ(heard_, (std::vector{Status::authorizedAlways}));
}

TEST_F(LocationAuthorizationObserverTest, ACallbackMayReplaceItself) {
  observer_->onAuthStatusChange = [this](Status status) {
    recordChanges();
    heard_.push_back(status);
  };
  observer_->requestAlwaysAuthorization();
  decide(3);
  decide(2);
  EXPECT_EQ(heard_, (std::vector{Status::authorizedAlways, Status::denied}));
}

TEST_F(LocationAuthorizationObserverTest, ACallbackMayAskAgain) {
  observer_->onAuthStatusChange = [this](Status) { observer_->requestAlwaysAuthorization(); };
  observer_->requestWhenInUseAuthorization();
  decide(4);
  EXPECT_EQ(consent_.requests(), (std::vector{Request::whenInUse, Request::always}));
  EXPECT_EQ(consent_.managersMade(), 1U);
}

TEST_F(LocationAuthorizationObserverTest, ACallbackMayLetGoOfItsObserver) {
  observer_->onAuthStatusChange = [this](Status status) {
    observer_.reset();
    heard_.push_back(status);
  };
  observer_->requestWhenInUseAuthorization();
  decide(2);
  decide(4);
  EXPECT_EQ(heard_, (std::vector{Status::denied}));
  EXPECT_EQ(consent_.managers(), 0U);
}

TEST_F(LocationAuthorizationObserverTest, TheCallbackIsReleasedWithTheObserver) {
  const auto held = std::make_shared<int>(0);
  observer_->onAuthStatusChange = [held](Status) {};
  observer_->requestWhenInUseAuthorization();
  EXPECT_EQ(held.use_count(), 2);
  observer_.reset();
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(LocationAuthorizationObserverTest, AnObserverThatIsGoneHearsNothing) {
  recordChanges();
  observer_->requestWhenInUseAuthorization();
  consent_.setAuthorizationStatus(2);
  observer_.reset();
  dispatch_.runReady();
  EXPECT_TRUE(heard_.empty());
}

TEST_F(LocationAuthorizationObserverTest, EveryObserverHearsOfAChange) {
  recordChanges();
  Observer other(consent_);
  std::vector<Status> heardByOther;
  other.onAuthStatusChange = [&](Status status) { heardByOther.push_back(status); };
  observer_->requestWhenInUseAuthorization();
  other.requestAlwaysAuthorization();
  decide(4);
  EXPECT_EQ(heard_, (std::vector{Status::authorizedWhenInUse}));
  EXPECT_EQ(heardByOther, heard_);
}

}  // namespace
}  // namespace lanternfold
