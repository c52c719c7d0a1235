// What every storage does, whether it remembers in memory, in user defaults or in a file.
#include <chrono>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"
#include "Tests/NetworkMonitor/Metrics/StorageWorlds.h"
#include "Tests/Support/SampleConnectionMetrics.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Type = ConnectionMetricsType;

ConnectionMetrics sent(std::uint64_t bytes) { return {.sentBytes = bytes, .mtu = 1500}; }

template <typename World>
class ConnectionMetricsStorageTest : public testing::Test {
 protected:
  ConnectionMetricsStorage& storage() { return world_.storage; }

  World world_;
};

using Worlds = testing::Types<MemoryWorld, UserDefaultsWorld, FileWorld>;

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    if (std::is_same_v<World, MemoryWorld>) return "InMemory";
    return std::is_same_v<World, UserDefaultsWorld> ? "UserDefaults" : "File";
  }
};

TYPED_TEST_SUITE(ConnectionMetricsStorageTest, Worlds, WorldNames);

TYPED_TEST(ConnectionMetricsStorageTest, AllMetricsOfAnEmptyStorageAreAnEmptyMap) {
  EXPECT_EQ(this->storage().allMetrics(Type::adjusted), ConnectionMetricsMap());
  EXPECT_EQ(this->storage().allMetrics(Type::original), ConnectionMetricsMap());
  EXPECT_EQ(this->storage().metrics("en0", Type::adjusted), std::nullopt);
  EXPECT_EQ(this->storage().lastRegisterDate(), std::nullopt);
}

TYPED_TEST(ConnectionMetricsStorageTest, ReturnsWhatWasRegistered) {
  this->storage().registerMetrics(oneToEight, "en0", Type::original);
  EXPECT_EQ(this->storage().metrics("en0", Type::original), oneToEight);
  EXPECT_EQ(this->storage().allMetrics(Type::original),
            ConnectionMetricsMap::of({{"en0", oneToEight}}));
}

TYPED_TEST(ConnectionMetricsStorageTest, KeepsTypesAndNamesApart) {
  this->storage().registerMetrics(sent(1), "en0", Type::original);
  this->storage().registerMetrics(sent(2), "en0", Type::adjusted);
  this->storage().registerMetrics(sent(3), "en1", Type::adjusted);
  EXPECT_EQ(this->storage().metrics("en0", Type::original), sent(1));
  EXPECT_EQ(this->storage().metrics("en1", Type::original), std::nullopt);
  EXPECT_EQ(this->storage().metrics("en", Type::original), std::nullopt);
  EXPECT_EQ(this->storage().allMetrics(Type::adjusted),
            ConnectionMetricsMap::of({{"en0", sent(2)}, {"en1", sent(3)}}));
}

TYPED_TEST(ConnectionMetricsStorageTest, RemembersOfOneInterfaceWhatOneLookAfterAnotherGives) {
  using Remembered = ConnectionMetricsStorage::Remembered;
  EXPECT_EQ(this->storage().remembered("en0"), Remembered());
  this->storage().registerMetrics(sent(1), "en0", Type::original);
  this->storage().registerMetrics(sent(2), "en0", Type::adjusted);
  this->storage().registerMetrics(sent(3), "en1", Type::adjusted);
  this->world_.commit();
  const auto date = this->storage().lastRegisterDate();
  ASSERT_TRUE(date);
  EXPECT_EQ(this->storage().remembered("en0"), (Remembered{date, sent(1), sent(2)}));
  EXPECT_EQ(this->storage().remembered("en1"), (Remembered{date, std::nullopt, sent(3)}));
  EXPECT_EQ(this->storage().remembered("en"), (Remembered{date, std::nullopt, std::nullopt}));
}

TYPED_TEST(ConnectionMetricsStorageTest, ReplacesAnEarlierRecord) {
  this->storage().registerMetrics(sent(1), "en0", Type::original);
  this->storage().registerMetrics(sent(2), "en0", Type::original);
  EXPECT_EQ(this->storage().allMetrics(Type::original),
            ConnectionMetricsMap::of({{"en0", sent(2)}}));
}

TYPED_TEST(ConnectionMetricsStorageTest, TakesAnyNameThatIsText) {
  for (const char* name : {"br-1234.5", "en0/1", "a\"b\\c", "tab\there", "größe", "\U0001F310"}) {
    this->storage().registerMetrics(sent(7), name, Type::original);
    this->world_.commit();
    EXPECT_EQ(this->storage().metrics(name, Type::original), sent(7)) << name;
  }
}

TYPED_TEST(ConnectionMetricsStorageTest, HoldsTheLargestCounters) {
  ConnectionMetrics largest;
  largest.recvBytes = std::numeric_limits<std::uint64_t>::max();
  this->storage().registerMetrics(largest, "en0", Type::adjusted);
  this->world_.commit();
  EXPECT_EQ(this->storage().metrics("en0", Type::adjusted), largest);
}

TYPED_TEST(ConnectionMetricsStorageTest, ForgetsAllRecordsWithAReset) {
  this->storage().registerMetrics(sent(1), "en0", Type::original);
  this->storage().registerMetrics(sent(1), "en0", Type::adjusted);
  this->world_.commit();
  this->storage().reset();
  EXPECT_TRUE(this->storage().allMetrics(Type::original).empty());
  EXPECT_EQ(this->storage().metrics("en0", Type::adjusted), std::nullopt);
  this->storage().registerMetrics(sent(2), "en1", Type::original);
  EXPECT_EQ(this->storage().allMetrics(Type::original),
            ConnectionMetricsMap::of({{"en1", sent(2)}}));
}

TYPED_TEST(ConnectionMetricsStorageTest, IsChangedWhenNeverRegistered) {
  EXPECT_TRUE(this->storage().isChanged(this->world_.clock.now()));
  EXPECT_TRUE(this->storage().isChanged(std::chrono::system_clock::time_point::max()));
}

TYPED_TEST(ConnectionMetricsStorageTest, IsChangedSinceADateBeforeTheRegistrationOnly) {
  const auto registered = this->world_.clock.now();
  this->storage().registerMetrics(sent(1), "en0", Type::original);
  this->world_.commit();
  this->world_.clock.advance(1h);
  EXPECT_EQ(this->storage().lastRegisterDate(), registered);
  EXPECT_TRUE(this->storage().isChanged(registered - 1ns));
  EXPECT_FALSE(this->storage().isChanged(registered));
  EXPECT_FALSE(this->storage().isChanged(registered + 1ns));
}

TYPED_TEST(ConnectionMetricsStorageTest, IsPersistentWhenItCanBeSaved) {
  EXPECT_EQ(this->storage().isPersistent(), TypeParam::isPersistent);
  EXPECT_EQ(dynamic_cast<ConnectionMetricsPersistentStorage*>(&this->storage()) != nullptr,
            TypeParam::isPersistent);
  EXPECT_EQ(dynamic_cast<ConnectionMetricsLockingStorage*>(&this->storage()) != nullptr,
            TypeParam::isLocking);
}

TYPED_TEST(ConnectionMetricsStorageTest, HoldsManyInterfaces) {
  std::vector<ConnectionMetricsMap::Entry> expected;
  for (int i = 0; i < TypeParam::manyInterfaces; ++i) {
    const std::string name = "veth" + std::to_string(i);
    this->storage().registerMetrics(sent(static_cast<std::uint64_t>(i)), name, Type::original);
    expected.push_back({name, sent(static_cast<std::uint64_t>(i))});
  }
  this->world_.commit();
  EXPECT_EQ(this->storage().allMetrics(Type::original), ConnectionMetricsMap::of(expected));
}

}  // namespace
}  // namespace lanternfold
