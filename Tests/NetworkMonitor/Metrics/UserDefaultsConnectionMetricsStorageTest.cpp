// What only the storage in user defaults does: its two keys, and entries that are none of its own.
#include <chrono>
#include <span>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"
#include "NetworkMonitor/Metrics/UserDefaultsConnectionMetricsStorage.h"
#include "Tests/NetworkMonitor/Metrics/StorageWorlds.h"
#include "Tests/Support/SampleConnectionMetrics.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Type = ConnectionMetricsType;

constexpr std::string_view dataKey = "UserDefaultsConnectionMetricsStorage__data";
constexpr std::string_view dateKey = "UserDefaultsConnectionMetricsStorage__lastRegisterDate";

PropertyListValue dataOf(std::string_view text) {
  const auto bytes = std::as_bytes(std::span(text));
  return PropertyListValue::Data(bytes.begin(), bytes.end());
}

class UserDefaultsConnectionMetricsStorageTest : public testing::Test {
 protected:
  void setEntries(PropertyListDictionary entries) {
    world_.userDefaults->set(dataKey, std::move(entries));
  }
  [[nodiscard]] PropertyListDictionary entries() const {
    const auto value = world_.userDefaults->object(dataKey).value();
    return value && value->asDictionary() != nullptr ? *value->asDictionary()
                                                     : PropertyListDictionary{};
  }

  const PropertyListValue record_ = dataOf(encodeConnectionMetrics(oneToEight));
  UserDefaultsWorld world_;
  UserDefaultsConnectionMetricsStorage& storage_ = world_.storage;
};

TEST_F(UserDefaultsConnectionMetricsStorageTest, WritesADictionaryOfRecordsAndADate) {
  storage_.registerMetrics(oneToEight, "en0", Type::original);
  storage_.registerMetrics(oneToEight, "en0", Type::adjusted);
  EXPECT_EQ(entries(), (PropertyListDictionary{{"0/en0", record_}, {"1/en0", record_}}));
  EXPECT_EQ(world_.userDefaults->object(dateKey), PropertyListValue(world_.clock.now()));
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, KeysAreTheFixedOnes) {
  EXPECT_EQ(UserDefaultsConnectionMetricsStorage::dataKey, dataKey);
  EXPECT_EQ(UserDefaultsConnectionMetricsStorage::lastRegisterDateKey, dateKey);
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, SeesAtOnceWhatAnotherProgramRegistered) {
  UserDefaultsConnectionMetricsStorage other({.clock = world_.clock, .log = world_.log},
                                             world_.userDefaults);
  other.registerMetrics(oneToEight, "en0", Type::adjusted);
  EXPECT_EQ(storage_.metrics("en0", Type::adjusted), oneToEight);
  other.reset();
  EXPECT_EQ(storage_.metrics("en0", Type::adjusted), std::nullopt);
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, IgnoresAnEntryKeyed7En0) {
  setEntries({{"7/en0", record_}, {"1/en1", record_}});
  EXPECT_EQ(storage_.allMetrics(Type::adjusted), ConnectionMetricsMap::of({{"en1", oneToEight}}));
  EXPECT_TRUE(storage_.allMetrics(Type::original).empty());
  EXPECT_THAT(world_.log.lines(), IsEmpty());
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, IgnoresAnEntryKeyedXEn0) {
  for (const char* key : {"x/en0", "/en0", "en0", "0", "0/", "0x1/en0", "1.0/en0", " 0/en0",
                          "1 /en0", "-1/en0", "99999999999999999999/en0", ""}) {
    setEntries({{key, record_}});
    EXPECT_TRUE(storage_.allMetrics(Type::original).empty()) << key;
    EXPECT_TRUE(storage_.allMetrics(Type::adjusted).empty()) << key;
  }
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, IgnoresDataThatIsNoConnectionMetricsJsonObject) {
  for (const char* text : {"", "x", "7", "[]", "{}", R"({"sentBytes":1})", "null"}) {
    setEntries({{"0/en0", dataOf(text)}, {"0/en1", record_}});
    EXPECT_EQ(storage_.allMetrics(Type::original), ConnectionMetricsMap::of({{"en1", oneToEight}}))
        << text;
  }
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, IsEmptyWhenOneOfItsValuesIsNoData) {
  for (const char* key : {"0/en0", "7/en0", "x"}) {
    setEntries({{key, encodeConnectionMetrics(oneToEight)}, {"0/en1", record_}});
    EXPECT_TRUE(storage_.allMetrics(Type::original).empty()) << key;
    EXPECT_EQ(storage_.metrics("en1", Type::original), std::nullopt) << key;
    storage_.registerMetrics(oneToEight, "en2", Type::original);
    EXPECT_EQ(entries(), (PropertyListDictionary{{"0/en2", record_}})) << key;
  }
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, IsEmptyWhenItsDataIsNoDictionary) {
  world_.userDefaults->set(dataKey, "text");
  EXPECT_TRUE(storage_.allMetrics(Type::original).empty());
  storage_.registerMetrics(oneToEight, "en0", Type::original);
  EXPECT_EQ(entries(), (PropertyListDictionary{{"0/en0", record_}}));
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, LeavesIgnoredEntriesOutOfTheNextWriting) {
  setEntries({{"7/en0", record_}, {"0/en1", dataOf("x")}, {"0/en2", record_}});
  storage_.registerMetrics(oneToEight, "en0", Type::original);
  EXPECT_EQ(entries(), (PropertyListDictionary{{"0/en0", record_}, {"0/en2", record_}}));
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, DividesAKeyAtItsFirstSlash) {
  setEntries({{"0/en0/1/2", record_}});
  EXPECT_EQ(storage_.metrics("en0/1/2", Type::original), oneToEight);
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, ReadsAnyIntegerBeforeTheSlash) {
  setEntries({{"01/en0", record_}});
  EXPECT_EQ(storage_.metrics("en0", Type::adjusted), oneToEight);
  setEntries({{"+1/en0", record_}});
  EXPECT_EQ(storage_.metrics("en0", Type::adjusted), oneToEight);
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, HasNoDateWhenAnotherKindStandsInItsPlace) {
  world_.userDefaults->set(dateKey, "yesterday");
  EXPECT_EQ(storage_.lastRegisterDate(), std::nullopt);
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, ResetRemovesBothKeys) {
  storage_.registerMetrics(oneToEight, "en0", Type::original);
  storage_.reset();
  EXPECT_EQ(world_.userDefaults->object(dataKey), std::nullopt);
  EXPECT_EQ(world_.userDefaults->object(dateKey), std::nullopt);
  EXPECT_EQ(storage_.lastRegisterDate(), std::nullopt);
}

TEST_F(UserDefaultsConnectionMetricsStorageTest, ReportsARecordThatCannotBeEncodedAndLeavesItOut) {
  storage_.registerMetrics(oneToEight, "en0", Type::original);
  storage_.registerMetrics(oneToEight, "en\xFF", Type::original);
  EXPECT_THAT(world_.log.lines(), ElementsAre("Failed to encode ConnectionMetrics"));
  EXPECT_EQ(entries(), (PropertyListDictionary{{"0/en0", record_}}));
  EXPECT_EQ(storage_.metrics("en\xFF", Type::original), std::nullopt);
}

TEST(UserDefaultsConnectionMetricsStorageDeathTest, WithoutUserDefaultsStopsTheProgram) {
  SimulatedClock clock;
  RecordingDiagnosticLog log;
  EXPECT_DEATH(UserDefaultsConnectionMetricsStorage({.clock = clock, .log = log}, nullptr),
               "a storage in user defaults was given none");
}

}  // namespace
}  // namespace lanternfold
