#include <gtest/gtest.h>

#include "NetworkMonitor/Wlan/NetworkPathWlanInterfaceNameFinder.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeUserDefaults.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Finder = NetworkPathWlanInterfaceNameFinder;
using Name = std::optional<std::string>;

constexpr const char* cacheKey = "NetworkPathWlanInterfaceNameFinderCache";

NetworkPath pathOver(std::vector<PathInterface> interfaces) {
  return {.status = PathStatus::satisfied, .availableInterfaces = std::move(interfaces)};
}
NetworkPath wifiPath(const char* name) { return pathOver({{name, 3, PathInterfaceType::wifi}}); }

/// The caller's wait is what lets time pass; the queues run from `answersAfter_` of it on.
class NetworkPathWlanInterfaceNameFinderTest : public testing::Test {
 protected:
  NetworkPathWlanInterfaceNameFinderTest() {
    clock_.setSleeper([this](std::chrono::nanoseconds duration) {
      clock_.advance(duration);
      waited_ += duration;
      if (waited_ >= answersAfter_) dispatch_.runReady();
    });
  }

  Name find(std::shared_ptr<UserDefaults> userDefaults) {
    waited_ = {};
    return Finder(std::move(userDefaults),
                  {.pathMonitors = paths_, .dispatch = dispatch_, .clock = clock_})
        .wlanInterfaceName();
  }
  Name find() { return find(userDefaults_); }
  Name findWithoutCache() { return find(nullptr); }

  void remember(PropertyListValue value) { userDefaults_->set(cacheKey, std::move(value)); }
  void remember(const char* name, std::chrono::nanoseconds age) {
    remember(PropertyListDictionary{
        {"interfaceName", name},
        {"date",
         clock_.now() - std::chrono::duration_cast<std::chrono::system_clock::duration>(age)}});
  }
  std::optional<PropertyListValue> remembered() { return userDefaults_->object(cacheKey).value(); }
  PropertyListValue entry(const char* name) {
    return PropertyListDictionary{{"interfaceName", name}, {"date", clock_.now()}};
  }
  std::size_t lookups() { return paths_.monitors().size(); }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakePathMonitorFactory paths_{wifiPath("wlan0")};
  const std::shared_ptr<FakeUserDefaults> userDefaults_ = std::make_shared<FakeUserDefaults>();
  std::chrono::nanoseconds answersAfter_ = 0ns;
  std::chrono::nanoseconds waited_ = 0ns;
};

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

TEST_F(NetworkPathWlanInterfaceNameFinderTest, WithoutAStoreEveryQuestionIsALookUp) {
  EXPECT_EQ(findWithoutCache(), "wlan0");
  paths_.deliver(wifiPath("wlan1"));
  EXPECT_EQ(findWithoutCache(), "wlan1");
  EXPECT_EQ(lookups(), 2U);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, AFoundNameIsRememberedWithItsDate) {
  answersAfter_ = 30ms;
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(remembered(), entry("wlan0"));
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ARememberedNameIsGivenWithoutALookUp) {
  static_cast<void>(find());
  paths_.deliver(wifiPath("wlan1"));
  const auto before = remembered();
  clock_.advance(23h);
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(lookups(), 1U);
  EXPECT_EQ(waited_, 0ms);
  EXPECT_EQ(remembered(), before);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ACacheEntryOneSecondYoungerThan86400SecondsIsUsed) {
  remember("wlan9", 86'399s);
  EXPECT_EQ(find(), "wlan9");
  EXPECT_EQ(lookups(), 0U);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ACacheEntryExactly86400SecondsOldIsNotUsed) {
  remember("wlan9", 86'400s);
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(remembered(), entry("wlan0"));
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ACacheEntryJustYoungerThan86400SecondsIsUsed) {
  remember("wlan9", 86'400s - 1ns);
  EXPECT_EQ(find(), "wlan9");
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ACacheEntryOfTheFutureIsUsed) {
  remember("wlan9", -24h);
  EXPECT_EQ(find(), "wlan9");
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, DatesAtTheEndsOfTimeAreNoTrouble) {
  using Date = PropertyListValue::Date;
  remember(PropertyListDictionary{{"interfaceName", "wlan9"}, {"date", Date::min()}});
  EXPECT_EQ(find(), "wlan0");
  remember(PropertyListDictionary{{"interfaceName", "wlan9"}, {"date", Date::max()}});
  EXPECT_EQ(find(), "wlan9");
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, TheAgeIsOfTheWallClock) {
  static_cast<void>(find());
  paths_.deliver(wifiPath("wlan1"));
  clock_.stepWallClock(86'399s);
  EXPECT_EQ(find(), "wlan0");
  clock_.stepWallClock(1s);
  EXPECT_EQ(find(), "wlan1");
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ACacheEntryOfTheWrongShapeIsOverwritten) {
  const PropertyListValue now = clock_.now();
  const PropertyListValue wrongShapes[] = {
      "wlan9",
      7,
      PropertyListValue::Data{std::byte{1}},
      now,
      PropertyListDictionary{},
      PropertyListDictionary{{"interfaceName", "wlan9"}},
      PropertyListDictionary{{"date", now}},
      PropertyListDictionary{{"interfaceName", 9}, {"date", now}},
      PropertyListDictionary{{"interfaceName", PropertyListDictionary{}}, {"date", now}},
      PropertyListDictionary{{"interfaceName", "wlan9"}, {"date", "2024-01-01"}},
      PropertyListDictionary{{"interfaceName", "wlan9"}, {"date", 725'760'000}},
      PropertyListDictionary{{"InterfaceName", "wlan9"}, {"Date", now}},
  };
  for (const PropertyListValue& wrong : wrongShapes) {
    remember(wrong);
    EXPECT_EQ(find(), "wlan0");
    EXPECT_EQ(remembered(), entry("wlan0"));
  }
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, FurtherMembersOfACacheEntryDoNotMatter) {
  remember(PropertyListDictionary{
      {"interfaceName", "wlan9"}, {"date", clock_.now()}, {"weather", "fair"}});
  EXPECT_EQ(find(), "wlan9");
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, AnOldCacheEntryStaysWhenNothingIsFound) {
  remember("wlan9", 86'400s);
  const auto before = remembered();
  paths_.deliver({});
  EXPECT_EQ(find(), std::nullopt);
  EXPECT_EQ(remembered(), before);
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ACacheThatCannotBeReadIsAMiss) {
  remember("wlan9", 1h);
  userDefaults_->setDiskUnreadable(true);
  EXPECT_EQ(find(), "wlan0");
}

TEST_F(NetworkPathWlanInterfaceNameFinderTest, ACacheThatCannotBeWrittenServesThisProgram) {
  userDefaults_->setDiskFailing(true);
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(lookups(), 1U);
}

}  // namespace
}  // namespace lanternfold
