// What a found name is remembered for, and when it is looked up again.
#include "Tests/NetworkMonitor/Wlan/WlanInterfaceNameFinderFixture.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

using NetworkPathWlanInterfaceNameFinderCacheTest = WlanInterfaceNameFinderFixture;

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, WithoutAStoreEveryQuestionIsALookUp) {
  EXPECT_EQ(findWithoutCache(), "wlan0");
  paths_.deliver(wifiPath("wlan1"));
  EXPECT_EQ(findWithoutCache(), "wlan1");
  EXPECT_EQ(lookups(), 2U);
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, AFoundNameIsRememberedWithItsDate) {
  answersAfter_ = 30ms;
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(remembered(), entry("wlan0"));
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, ARememberedNameIsGivenWithoutALookUp) {
  static_cast<void>(find());
  paths_.deliver(wifiPath("wlan1"));
  const auto before = remembered();
  clock_.advance(23h);
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(lookups(), 1U);
  EXPECT_EQ(waited_, 0ms);
  EXPECT_EQ(remembered(), before);
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest,
       ACacheEntryOneSecondYoungerThan86400SecondsIsUsed) {
  remember("wlan9", 86'399s);
  EXPECT_EQ(find(), "wlan9");
  EXPECT_EQ(lookups(), 0U);
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, ACacheEntryExactly86400SecondsOldIsNotUsed) {
  remember("wlan9", 86'400s);
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(remembered(), entry("wlan0"));
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, ACacheEntryJustYoungerThan86400SecondsIsUsed) {
  remember("wlan9", 86'400s - 1ns);
  EXPECT_EQ(find(), "wlan9");
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, ACacheEntryOfTheFutureIsUsed) {
  remember("wlan9", -24h);
  EXPECT_EQ(find(), "wlan9");
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, DatesAtTheEndsOfTimeAreNoTrouble) {
  using Date = PropertyListValue::Date;
  remember(PropertyListDictionary{{"interfaceName", "wlan9"}, {"date", Date::min()}});
  EXPECT_EQ(find(), "wlan0");
  remember(PropertyListDictionary{{"interfaceName", "wlan9"}, {"date", Date::max()}});
  EXPECT_EQ(find(), "wlan9");
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, TheAgeIsOfTheWallClock) {
  static_cast<void>(find());
  paths_.deliver(wifiPath("wlan1"));
  clock_.stepWallClock(86'399s);
  EXPECT_EQ(find(), "wlan0");
  clock_.stepWallClock(1s);
  EXPECT_EQ(find(), "wlan1");
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, ACacheEntryOfTheWrongShapeIsOverwritten) {
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

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, FurtherMembersOfACacheEntryDoNotMatter) {
  remember(PropertyListDictionary{
      {"interfaceName", "wlan9"}, {"date", clock_.now()}, {"weather", "fair"}});
  EXPECT_EQ(find(), "wlan9");
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, AnOldCacheEntryStaysWhenNothingIsFound) {
  remember("wlan9", 86'400s);
  const auto before = remembered();
  paths_.deliver({});
  EXPECT_EQ(find(), std::nullopt);
  EXPECT_EQ(remembered(), before);
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, ACacheThatCannotBeReadIsAMiss) {
  remember("wlan9", 1h);
  userDefaults_->setDiskUnreadable(true);
  EXPECT_EQ(find(), "wlan0");
}

TEST_F(NetworkPathWlanInterfaceNameFinderCacheTest, ACacheThatCannotBeWrittenServesThisProgram) {
  userDefaults_->setDiskFailing(true);
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(find(), "wlan0");
  EXPECT_EQ(lookups(), 1U);
}

}  // namespace
}  // namespace lanternfold
