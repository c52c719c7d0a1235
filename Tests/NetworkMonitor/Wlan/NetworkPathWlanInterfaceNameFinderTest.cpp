// The look-up: what is found, and how long it is waited for.
#include "Tests/NetworkMonitor/Wlan/WlanInterfaceNameFinderFixture.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

using NetworkPathWlanInterfaceNameFinderTest = WlanInterfaceNameFinderFixture;

TEST_F(NetworkPathWlanInterfaceNameFinderTest, FindsTheFirstInterfaceOfTheWifiPath) {
  paths_.deliver(pathOver({{"eth0", 2, PathInterfaceType::wiredEthernet},
                           {"wlan1", 4, PathInterfaceType::wifi},
                           {"wlan0", 3, PathInterfaceType::wifi}}));
  EXPECT_EQ(find(), "wlan1");
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, AnInterfaceWithoutAWayOutIsFoundToo) {
  paths_.deliver({.status = PathStatus::unsatisfied,
                  .availableInterfaces = {{"wlan0", 3, PathInterfaceType::wifi}}});
  EXPECT_EQ(find(), "wlan0");
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ListensForWifiOnTheQueueOfWhatAUserBegan) {
  static_cast<void>(find());
  ASSERT_EQ(lookups(), 1U);
  const auto& monitor = *paths_.monitors().front();
  EXPECT_EQ(monitor.requiredInterfaceType, PathInterfaceType::wifi);
  EXPECT_EQ(monitor.startedOn, &dispatch_.globalQueue(QualityOfService::userInitiated));
  EXPECT_EQ(monitor.updates, 1);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, TheMonitorIsCancelledAndGoneAfterTheWait) {
  static_cast<void>(find());
  EXPECT_TRUE(paths_.monitors().front()->cancelled);
  EXPECT_TRUE(paths_.monitors().front()->destroyed);
  answersAfter_ = 1h;
  static_cast<void>(findWithoutCache());
  EXPECT_TRUE(paths_.monitors().back()->cancelled);
  EXPECT_TRUE(paths_.monitors().back()->destroyed);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, NoWifiInterfaceIsNoneAndWritesNoCacheEntry) {
  paths_.deliver(pathOver({{"eth0", 2, PathInterfaceType::wiredEthernet}}));
  EXPECT_EQ(find(), std::nullopt);
  EXPECT_LE(waited_, 100ms);
  EXPECT_EQ(remembered(), std::nullopt);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, APathWithoutAnInterfaceEndsTheWait) {
  paths_.deliver({});
  answersAfter_ = 20ms;
  EXPECT_EQ(find(), std::nullopt);
  EXPECT_EQ(waited_, 20ms);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, WithoutAnUpdateTheWaitEndsAfterExactly100ms) {
  answersAfter_ = 1h;
  const auto before = clock_.steadyNow();
  EXPECT_EQ(find(), std::nullopt);
  EXPECT_EQ(clock_.steadyNow() - before, 100ms);
  EXPECT_EQ(remembered(), std::nullopt);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, AnUpdateEndsTheWaitBeforeItsTime) {
  answersAfter_ = 40ms;
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(waited_, 40ms);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, AnUpdateAtTheEndOfTheWaitIsInTime) {
  answersAfter_ = 100ms;
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(waited_, 100ms);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, AnUpdateAfterTheWaitIsTooLate) {
  answersAfter_ = 100ms + 1ns;
  EXPECT_EQ(find(), std::nullopt);
  EXPECT_EQ(waited_, 100ms);
  dispatch_.advance(1s);
  EXPECT_EQ(remembered(), std::nullopt);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, AWallClockSetBackMeanwhileDoesNotProlongTheWait) {
  answersAfter_ = 1h;
  clock_.setSleeper([this](std::chrono::nanoseconds duration) {
    clock_.advance(duration);
    clock_.stepWallClock(-1h);
  });
  const auto before = clock_.steadyNow();
  EXPECT_EQ(find(), std::nullopt);
  EXPECT_EQ(clock_.steadyNow() - before, 100ms);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ASecondUpdateWithinOneWaitIsIgnored) {
  // The path changes after the first update and before the caller looks again.
  bool isChanged = false;
  clock_.setSleeper([&](std::chrono::nanoseconds duration) {
    clock_.advance(duration);
    while (dispatch_.runOne()) {
      if (!std::exchange(isChanged, true)) paths_.deliver(wifiPath("wlan1"));
    }
  });
  EXPECT_EQ(findWithoutCache(), "wlan0");
  EXPECT_EQ(paths_.monitors().front()->updates, 2);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ASecondUpdateWithoutAnInterfaceIsIgnoredToo) {
  bool isChanged = false;
  clock_.setSleeper([&](std::chrono::nanoseconds duration) {
    clock_.advance(duration);
    while (dispatch_.runOne()) {
      if (!std::exchange(isChanged, true)) paths_.deliver({});
    }
  });
  EXPECT_EQ(findWithoutCache(), "wlan0");
  EXPECT_EQ(paths_.monitors().front()->updates, 2);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, AFirstUpdateWithoutAnInterfaceIsTheAnswer) {
  paths_.deliver({});
  bool isChanged = false;
  clock_.setSleeper([&](std::chrono::nanoseconds duration) {
    clock_.advance(duration);
    while (dispatch_.runOne()) {
      if (!std::exchange(isChanged, true)) paths_.deliver(wifiPath("wlan0"));
    }
  });
  EXPECT_EQ(findWithoutCache(), std::nullopt);
  EXPECT_EQ(paths_.monitors().front()->updates, 2);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ALookUpStartsByClearingTheLastFoundName) {
  Finder finder(nullptr, {.pathMonitors = paths_, .dispatch = dispatch_, .clock = clock_});
  EXPECT_EQ(finder.wlanInterfaceName(), "wlan0");
  paths_.deliver({});
  EXPECT_EQ(finder.wlanInterfaceName(), std::nullopt);
  paths_.deliver(wifiPath("wlan1"));
  EXPECT_EQ(finder.wlanInterfaceName(), "wlan1");
  answersAfter_ = 1h;
  EXPECT_EQ(finder.wlanInterfaceName(), std::nullopt);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ALateUpdateIsNotTheAnswerOfTheNextLookUp) {
  Finder finder(nullptr, {.pathMonitors = paths_, .dispatch = dispatch_, .clock = clock_});
  answersAfter_ = 1h;
  EXPECT_EQ(finder.wlanInterfaceName(), std::nullopt);
  paths_.deliver({});
  answersAfter_ = 0ns;
  EXPECT_EQ(finder.wlanInterfaceName(), std::nullopt);
}

}  // namespace
}  // namespace lanternfold
