// The storage in user defaults over a suite that is not written or not read.
#include <chrono>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/UserDefaultsConnectionMetricsStorage.h"
#include "Tests/NetworkMonitor/Metrics/StorageWorlds.h"
#include "Tests/Support/SampleConnectionMetrics.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Type = ConnectionMetricsType;

constexpr const char* unreadable = "the settings cannot be read: the disk fails";
constexpr const char* unwritable = "the settings cannot be written: the disk is full";
constexpr ConnectionMetrics later{.sentBytes = 100, .mtu = 8};

class UserDefaultsConnectionMetricsStorageFaultsTest : public testing::Test {
 protected:
  /// What an earlier program left.
  void rememberHistory() {
    UserDefaultsConnectionMetricsStorage earlier({.clock = world_.clock, .log = world_.log},
                                                 world_.userDefaults);
    for (const Type type : {Type::original, Type::adjusted}) {
      earlier.registerMetrics(oneToEight, "en0", type);
      earlier.registerMetrics(oneToEight, "en1", type);
    }
    ASSERT_TRUE(earlier.save());
    registered_ = world_.clock.now();
    world_.clock.advance(1h);
  }
  void expectHistory() {
    for (const Type type : {Type::original, Type::adjusted}) {
      EXPECT_EQ(storage_.allMetrics(type),
                ConnectionMetricsMap::of({{"en0", oneToEight}, {"en1", oneToEight}}));
    }
    EXPECT_EQ(storage_.lastRegisterDate(), registered_);
  }
  /// Why it cannot be saved, or nothing.
  std::string saved() {
    const auto done = storage_.save();
    return done ? "" : done.error().sentence;
  }
  FakeUserDefaults& suite() { return *world_.userDefaults; }

  UserDefaultsWorld world_;
  UserDefaultsConnectionMetricsStorage& storage_ = world_.storage;
  ConnectionMetricsStorage::Date registered_;
};

TEST_F(UserDefaultsConnectionMetricsStorageFaultsTest, SaveBringsTheSuiteToTheDiskOrSaysWhyNot) {
  suite().setDiskFailing(true);
  storage_.registerMetrics(oneToEight, "en0", Type::original);
  EXPECT_EQ(storage_.metrics("en0", Type::original), oneToEight);
  EXPECT_EQ(saved(), unwritable);
  suite().setDiskFailing(false);
  EXPECT_EQ(saved(), "");
  EXPECT_EQ(storage_.metrics("en0", Type::original), oneToEight);
}

TEST_F(UserDefaultsConnectionMetricsStorageFaultsTest, AnswersNoneFromASuiteThatCannotBeRead) {
  rememberHistory();
  suite().setDiskUnreadable(true);
  EXPECT_EQ(storage_.metrics("en0", Type::original), std::nullopt);
  EXPECT_TRUE(storage_.allMetrics(Type::adjusted).empty());
  EXPECT_EQ(storage_.lastRegisterDate(), std::nullopt);
  suite().setDiskUnreadable(false);
  expectHistory();
}

TEST_F(UserDefaultsConnectionMetricsStorageFaultsTest,
       ADatabaseThatCouldNotBeOpenedDoesNotWipeTheHistory) {
  rememberHistory();
  suite().setDiskUnreadable(true);
  suite().setDiskFailing(true);
  storage_.registerMetrics(later, "en0", Type::original);
  EXPECT_EQ(saved(), unwritable);
  suite().setDiskUnreadable(false);
  suite().setDiskFailing(false);
  EXPECT_EQ(saved(), "") << "the failure was reported before";
  expectHistory();
}

TEST_F(UserDefaultsConnectionMetricsStorageFaultsTest,
       ALookThatFailedBeforeAWriteThatWorksDoesNotWipeTheHistory) {
  rememberHistory();
  suite().setDiskUnreadable(true);
  storage_.registerMetrics(later, "en0", Type::original);
  suite().setDiskUnreadable(false);
  expectHistory();
  EXPECT_EQ(saved(), unreadable);
  expectHistory();
}

TEST_F(UserDefaultsConnectionMetricsStorageFaultsTest,
       WhatMayBeComputedFromALookThatFailedIsNotRegistered) {
  rememberHistory();
  const auto lookAtRecord = [this] { static_cast<void>(storage_.remembered("en0")); };
  const auto lookAtDate = [this] { static_cast<void>(storage_.lastRegisterDate()); };
  for (const std::function<void()>& look :
       {std::function<void()>(lookAtRecord), std::function<void()>(lookAtDate)}) {
    suite().setDiskUnreadable(true);
    look();
    suite().setDiskUnreadable(false);
    storage_.registerMetrics(later, "en0", Type::adjusted);
    expectHistory();
    EXPECT_EQ(saved(), unreadable);
  }
}

TEST_F(UserDefaultsConnectionMetricsStorageFaultsTest, RegistersAgainOnceTheFailureWasReported) {
  rememberHistory();
  suite().setDiskUnreadable(true);
  storage_.registerMetrics(later, "en0", Type::original);
  suite().setDiskUnreadable(false);
  EXPECT_EQ(saved(), unreadable);
  storage_.registerMetrics(later, "en0", Type::original);
  EXPECT_EQ(saved(), "");
  EXPECT_EQ(storage_.allMetrics(Type::original),
            ConnectionMetricsMap::of({{"en0", later}, {"en1", oneToEight}}));
  EXPECT_EQ(storage_.lastRegisterDate(), world_.clock.now());
}

TEST_F(UserDefaultsConnectionMetricsStorageFaultsTest, AResetNeedsNothingOfWhatCannotBeRead) {
  rememberHistory();
  suite().setDiskUnreadable(true);
  EXPECT_EQ(storage_.metrics("en0", Type::original), std::nullopt);
  storage_.reset();
  suite().setDiskUnreadable(false);
  storage_.registerMetrics(later, "en0", Type::original);
  EXPECT_EQ(saved(), "");
  EXPECT_EQ(storage_.allMetrics(Type::original), ConnectionMetricsMap::of({{"en0", later}}));
  EXPECT_TRUE(storage_.allMetrics(Type::adjusted).empty());
}

}  // namespace
}  // namespace lanternfold
