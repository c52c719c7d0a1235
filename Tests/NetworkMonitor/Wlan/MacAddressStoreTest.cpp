#include <thread>

#include <gtest/gtest.h>

#include "NetworkMonitor/Wlan/MacAddressStore.h"
#include "Tests/Support/FakeUserDefaults.h"

namespace lanternfold {
namespace {

constexpr const char* addressesKey = "MacAddressStorage";
constexpr const char* legacyKey = "USER_STORED_MAC";
constexpr const char* first = "02:00:00:00:00:01";
constexpr const char* second = "02:00:00:00:00:02";

class MacAddressStoreTest : public testing::Test {
 protected:
  std::optional<PropertyListValue> stored() const {
    return userDefaults_->object(addressesKey).value();
  }
  void store(PropertyListValue value) { userDefaults_->set(addressesKey, std::move(value)); }

  const std::shared_ptr<FakeUserDefaults> userDefaults_ = std::make_shared<FakeUserDefaults>();
  MacAddressStore store_{userDefaults_};
};

using Map = PropertyListDictionary;

TEST_F(MacAddressStoreTest, KnowsNothingAtFirst) {
  EXPECT_EQ(store_.macAddress("en0"), std::nullopt);
  EXPECT_EQ(store_.getWlanHwAddress(), std::nullopt);
  EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(MacAddressStoreTest, SavesTheAddressUnderTheInterfacesName) {
  EXPECT_TRUE(store_.save(first, "en1"));
  EXPECT_EQ(store_.macAddress("en1"), first);
  EXPECT_EQ(store_.macAddress("en2"), std::nullopt);
  EXPECT_EQ(stored(), PropertyListValue(Map{{"en1", first}}));
}

TEST_F(MacAddressStoreTest, KeepsTheAddressesOfOtherInterfaces) {
  EXPECT_TRUE(store_.save(first, "en0"));
  EXPECT_TRUE(store_.save(second, "en1"));
  EXPECT_EQ(stored(), PropertyListValue(Map{{"en0", first}, {"en1", second}}));
}

TEST_F(MacAddressStoreTest, ReplacesAnEarlierAddress) {
  EXPECT_TRUE(store_.save(first, "en0"));
  EXPECT_TRUE(store_.save(second, "en0"));
  EXPECT_EQ(stored(), PropertyListValue(Map{{"en0", second}}));
}

TEST_F(MacAddressStoreTest, NeitherChecksNorNormalisesAnAddress) {
  for (const char* text :
       {"", "02:00:00:00:00:ab", "02-00-00-00-00-AB", "no address", "\xE2\x82"}) {
    EXPECT_TRUE(store_.save(text, "en0"));
    EXPECT_EQ(store_.getWlanHwAddress(), text);
  }
}

TEST_F(MacAddressStoreTest, NamesMatchExactly) {
  EXPECT_TRUE(store_.save(first, "en0"));
  for (const char* name : {"", "EN0", "en", "en00", "en0 "}) {
    EXPECT_EQ(store_.macAddress(name), std::nullopt) << name;
  }
}

TEST_F(MacAddressStoreTest, AnotherProgramsAddressIsSeenAtOnce) {
  const auto disk = std::make_shared<FakeUserDefaultsDisk>();
  MacAddressStore ours(std::make_shared<FakeUserDefaults>(disk, "standard"));
  MacAddressStore theirs(std::make_shared<FakeUserDefaults>(disk, "standard"));
  EXPECT_TRUE(theirs.save(first, "en0"));
  EXPECT_EQ(ours.macAddress("en0"), first);
  EXPECT_TRUE(ours.save(second, "en1"));
  EXPECT_EQ(theirs.macAddress("en1"), second);
  EXPECT_EQ(theirs.macAddress("en0"), first);
}

TEST_F(MacAddressStoreTest, DeletingFromAnAbsentMapLeavesTheStoreUntouched) {
  EXPECT_TRUE(store_.deleteMacAddress("en0"));
  EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(MacAddressStoreTest, DeletingFromAMapOfTheWrongShapeLeavesItUntouched) {
  const PropertyListValue wrong = Map{{"en0", first}, {"en1", 7}};
  store(wrong);
  EXPECT_TRUE(store_.deleteMacAddress("en0"));
  EXPECT_EQ(stored(), wrong);
}

TEST_F(MacAddressStoreTest, DeletingTheLastEntryWritesAnEmptyMap) {
  EXPECT_TRUE(store_.save(first, "en0"));
  EXPECT_TRUE(store_.deleteMacAddress("en0"));
  EXPECT_EQ(stored(), PropertyListValue(Map{}));
}

TEST_F(MacAddressStoreTest, DeletingOneEntryKeepsTheOthers) {
  store(Map{{"en0", first}, {"en1", second}});
  EXPECT_TRUE(store_.deleteMacAddress("en0"));
  EXPECT_EQ(stored(), PropertyListValue(Map{{"en1", second}}));
}

TEST_F(MacAddressStoreTest, DeletingAMissingEntryIsNoError) {
  store(Map{{"en1", second}});
  EXPECT_TRUE(store_.deleteMacAddress("en0"));
  EXPECT_EQ(stored(), PropertyListValue(Map{{"en1", second}}));
}

TEST_F(MacAddressStoreTest, DeletingDoesNotTouchTheLegacyAddress) {
  userDefaults_->set(legacyKey, second);
  EXPECT_TRUE(store_.save(first, "en0"));
  EXPECT_TRUE(store_.deleteMacAddress("en0"));
  EXPECT_EQ(store_.getWlanHwAddress(), second);
}

TEST_F(MacAddressStoreTest, AStoredMapWithAValueThatIsNoStringIsAbsent) {
  for (const PropertyListValue& wrong : {PropertyListValue(7), PropertyListValue(Map{}),
                                         PropertyListValue(PropertyListValue::Data{std::byte{1}}),
                                         PropertyListValue(PropertyListValue::Date{})}) {
    store(Map{{"en0", first}, {"en1", wrong}, {"en2", second}});
    for (const char* name : {"en0", "en1", "en2"}) {
      EXPECT_EQ(store_.macAddress(name), std::nullopt) << name;
    }
    EXPECT_EQ(store_.getWlanHwAddress(), std::nullopt);
    EXPECT_TRUE(store_.save(second, "en3"));
    EXPECT_EQ(stored(), PropertyListValue(Map{{"en3", second}}));
  }
}

TEST_F(MacAddressStoreTest, AStoredValueThatIsNoMapIsAbsent) {
  for (const PropertyListValue& wrong : {PropertyListValue(first), PropertyListValue(7)}) {
    store(wrong);
    EXPECT_EQ(store_.macAddress("en0"), std::nullopt);
    EXPECT_TRUE(store_.deleteMacAddress("en0"));
    EXPECT_EQ(stored(), wrong);
    EXPECT_TRUE(store_.save(first, "en0"));
    EXPECT_EQ(stored(), PropertyListValue(Map{{"en0", first}}));
  }
}

TEST_F(MacAddressStoreTest, AnEmptyMapHoldsNoAddress) {
  store(Map{});
  EXPECT_EQ(store_.macAddress("en0"), std::nullopt);
  EXPECT_TRUE(store_.save(first, "en0"));
  EXPECT_EQ(store_.macAddress("en0"), first);
}

TEST_F(MacAddressStoreTest, TheWlanAddressIsThatOfEn0) {
  EXPECT_TRUE(store_.save(first, "en0"));
  userDefaults_->set(legacyKey, second);
  EXPECT_EQ(store_.getWlanHwAddress(), first);
}

TEST_F(MacAddressStoreTest, TheWlanAddressIgnoresEveryOtherName) {
  EXPECT_TRUE(store_.save(first, "wlan0"));
  EXPECT_TRUE(store_.save(second, "en1"));
  EXPECT_EQ(store_.getWlanHwAddress(), std::nullopt);
}

TEST_F(MacAddressStoreTest, WithoutEn0TheWlanAddressIsTheLegacyOne) {
  userDefaults_->set(legacyKey, second);
  EXPECT_EQ(store_.getWlanHwAddress(), second);
  EXPECT_TRUE(store_.save(first, "en1"));
  EXPECT_EQ(store_.getWlanHwAddress(), second);
}

TEST_F(MacAddressStoreTest, WithAMapOfTheWrongShapeTheWlanAddressIsTheLegacyOne) {
  store(Map{{"en0", first}, {"en1", 7}});
  userDefaults_->set(legacyKey, second);
  EXPECT_EQ(store_.getWlanHwAddress(), second);
}

TEST_F(MacAddressStoreTest, TheLegacyAddressIsOfNoInterface) {
  userDefaults_->set(legacyKey, second);
  EXPECT_EQ(store_.macAddress("en0"), std::nullopt);
  EXPECT_EQ(store_.macAddress("USER_STORED_MAC"), std::nullopt);
}

TEST_F(MacAddressStoreTest, ALegacyAddressThatIsNoStringIsNone) {
  for (const PropertyListValue& wrong : {PropertyListValue(7), PropertyListValue(Map{})}) {
    userDefaults_->set(legacyKey, wrong);
    EXPECT_EQ(store_.getWlanHwAddress(), std::nullopt);
  }
}

TEST_F(MacAddressStoreTest, SettingsThatCannotBeReadHoldNoAddress) {
  EXPECT_TRUE(store_.save(first, "en0"));
  userDefaults_->set(legacyKey, second);
  userDefaults_->setDiskUnreadable(true);
  EXPECT_EQ(store_.macAddress("en0"), std::nullopt);
  EXPECT_EQ(store_.getWlanHwAddress(), std::nullopt);
}

TEST_F(MacAddressStoreTest, SettingsThatCannotBeReadAreNotOverwritten) {
  EXPECT_TRUE(store_.save(first, "en0"));
  userDefaults_->setDiskUnreadable(true);
  const UserDefaultsError unreadable{"the settings cannot be read: the disk fails"};
  EXPECT_EQ(store_.save(second, "en1").error(), unreadable);
  EXPECT_EQ(store_.deleteMacAddress("en0").error(), unreadable);
  userDefaults_->setDiskUnreadable(false);
  EXPECT_EQ(stored(), PropertyListValue(Map{{"en0", first}}));
}

TEST_F(MacAddressStoreTest, WhatTheDiskDoesNotTakeIsReportedAndServesThisProgram) {
  userDefaults_->setDiskFailing(true);
  const UserDefaultsError unwritable{"the settings cannot be written: the disk is full"};
  EXPECT_EQ(store_.save(first, "en0").error(), unwritable);
  EXPECT_EQ(store_.macAddress("en0"), first);
  EXPECT_EQ(store_.deleteMacAddress("en0").error(), unwritable);
  EXPECT_EQ(store_.macAddress("en0"), std::nullopt);
}

TEST_F(MacAddressStoreTest, TwoThreadsLoseNoAddress) {
  constexpr int count = 50;
  const auto saveAll = [this](const std::string& prefix) {
    for (int number = 0; number < count; ++number) {
      EXPECT_TRUE(store_.save(first, prefix + std::to_string(number)));
    }
  };
  {
    const std::jthread other([&saveAll] { saveAll("wlan"); });
    saveAll("en");
  }
  const auto addresses = stored();
  ASSERT_TRUE(addresses && addresses->asDictionary() != nullptr);
  EXPECT_EQ(addresses->asDictionary()->size(), 2U * count);
}

TEST(MacAddressStoreDeathTest, NeedsUserDefaults) {
  EXPECT_DEATH(MacAddressStore(nullptr),
               "a store of hardware addresses was made without user defaults");
}

}  // namespace
}  // namespace lanternfold
