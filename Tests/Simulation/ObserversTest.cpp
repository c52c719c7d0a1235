// The observers see what is wrong: each rule is broken once, by hand.
#include <chrono>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/ConnectionMetricsFileJson.h"
#include "NetworkMonitor/Metrics/LockFileText.h"
#include "Tests/Simulation/Disk.h"

namespace lanternfold::simulation {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::Optional;

const DiskPaths paths{.folder = "/m", .data = "/m/data", .lock = "/m/lock"};

/// Two programs on one disk, driven by hand.
class ObserversTest : public testing::Test {
 protected:
  ObserversTest() {
    machine_.add("en0", ConnectionMetrics::initial(1500));
    machine_.setRate("en0", {.sent = 5});
  }

  /// Takes the lock as the product does.
  void lock(ProgramFiles& files) const {
    static_cast<void>(files.readFile(paths.lock, 100));
    EXPECT_TRUE(files.createEmptyFile(paths.lock));
    EXPECT_TRUE(
        files.overwriteFile(paths.lock, encodeLockFileText(run_.clock.now() + milliseconds(500))));
  }
  void read(const Turn& program) { disk_.fileObserver.countersRead(program, machine_.read(true)); }
  /// What the file holds after a sample that found so much.
  static std::string file(std::uint64_t original, std::uint64_t adjusted) {
    ConnectionMetricsData data;
    data[ConnectionMetricsType::original]["en0"] = {.sentBytes = original, .mtu = 1500};
    data[ConnectionMetricsType::adjusted]["en0"] = {.sentBytes = adjusted, .mtu = 1500};
    return encodeConnectionMetricsFile(data)->text;
  }
  void save(ProgramFiles& files, std::uint64_t original, std::uint64_t adjusted) {
    EXPECT_TRUE(files.replaceFile(paths.data, file(original, adjusted)));
  }
  /// One whole sample; returns whether its observers saw it complete.
  bool sample(ProgramFiles& files, const Turn& program, std::uint64_t counted) {
    lock(files);
    static_cast<void>(files.readFile(paths.data, 10000));
    read(program);
    save(files, counted, counted);
    EXPECT_TRUE(files.removeFile(paths.lock));
    const auto outcomes = disk_.fileObserver.takeOutcomes(program);
    return outcomes.size() == 1 && outcomes.front().isComplete;
  }

  RunContext run_{1};
  SimulatedMachine machine_{run_.clock, SimulatedMachine::BootDate::remembered};
  Disk disk_{run_, paths, Counting::capped};
  Turn first_{run_, 1};
  Turn second_{run_, 2};
  ProgramFiles files_{disk_, first_};
  ProgramFiles otherFiles_{disk_, second_};
};

TEST_F(ObserversTest, ARightSampleIsComplete) {
  EXPECT_TRUE(sample(files_, first_, 0));
  run_.clock.advance(std::chrono::seconds(120));
  EXPECT_TRUE(sample(files_, first_, 600));
  EXPECT_TRUE(sample(otherFiles_, second_, 600));
  EXPECT_EQ(run_.violation(), std::nullopt);
}

TEST_F(ObserversTest, SavesOtherRecordsThanTheReadingGives) {
  run_.clock.advance(std::chrono::seconds(120));
  sample(files_, first_, 599);
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("saves other records of en0")));
}

TEST_F(ObserversTest, SavesWithoutTheLock) {
  read(first_);
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("without holding the lock")));
}

TEST_F(ObserversTest, SavesATornText) {
  lock(files_);
  read(first_);
  static_cast<void>(files_.replaceFile(paths.data, file(0, 0).substr(1)));
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("none of the storage's")));
}

TEST_F(ObserversTest, SavesWithoutWhatStoodInTheFile) {
  EXPECT_TRUE(sample(files_, first_, 0));
  lock(otherFiles_);
  read(second_);
  save(otherFiles_, 0, 0);
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("without what stood in the file before")));
}

TEST_F(ObserversTest, ADisturbedSampleMayPutOlderRecordsBackButNotInventAny) {
  EXPECT_TRUE(sample(files_, first_, 0));
  run_.clock.advance(std::chrono::seconds(120));
  lock(otherFiles_);
  static_cast<void>(otherFiles_.readFile(paths.data, 10000));
  read(second_);
  disk_.tamper(file(650, 650));  // somebody who held the lock as well
  save(otherFiles_, 600, 600);
  EXPECT_EQ(run_.violation(), std::nullopt);
  save(otherFiles_, 600, 700);
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("follow from nothing it has seen")));
}

TEST_F(ObserversTest, WhatWasRegisteredBeforeAFileCouldNotBeKeptAsideCounts) {
  EXPECT_TRUE(sample(files_, first_, 0));
  disk_.tamper("torn");
  run_.clock.advance(std::chrono::seconds(120));
  lock(files_);
  EXPECT_TRUE(files_.readFile(paths.data, 10000));
  read(first_);
  disk_.setFull(Disk::Extent::everything);
  EXPECT_FALSE(files_.keepAside(paths.data));
  disk_.setFull(Disk::Extent::nothing);

  machine_.remove("en0");
  machine_.add("en0", ConnectionMetrics::initial(1500));
  machine_.setRate("en0", {.sent = 5});
  run_.clock.advance(std::chrono::seconds(6));
  lock(files_);
  read(first_);
  save(files_, 30, 600 + (30 + 4'294'967'295 - 600));
  EXPECT_EQ(run_.violation(), std::nullopt);
}

TEST_F(ObserversTest, ReadsATornFile) {
  EXPECT_TRUE(sample(files_, first_, 0));
  const std::string whole = *disk_.files.bytes(paths.data);
  EXPECT_TRUE(files_.readFile(paths.data, 10000));
  EXPECT_EQ(run_.violation(), std::nullopt);
  disk_.files.putFile(paths.data, whole.substr(0, whole.size() / 2));
  EXPECT_TRUE(files_.readFile(paths.data, 10000));
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("nobody has put there whole")));
}

TEST_F(ObserversTest, KeepsRecordsOverAReboot) {
  EXPECT_TRUE(sample(files_, first_, 0));
  run_.clock.advance(std::chrono::seconds(120));
  lock(files_);
  disk_.fileObserver.bootDateRead(first_, run_.clock.now());
  static_cast<void>(files_.attributes(paths.data));
  read(first_);
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("after a reset that it has not saved")));
}

TEST_F(ObserversTest, TakesALockThatIsHeld) {
  lock(files_);
  static_cast<void>(otherFiles_.readFile(paths.lock, 100));
  static_cast<void>(otherFiles_.createEmptyFile(paths.lock));
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("showed the lock to be held")));
}

TEST_F(ObserversTest, WritesAnotherTimeIntoTheLockFile) {
  static_cast<void>(files_.readFile(paths.lock, 100));
  static_cast<void>(files_.createEmptyFile(paths.lock));
  run_.clock.advance(milliseconds(10));
  static_cast<void>(
      files_.overwriteFile(paths.lock, encodeLockFileText(run_.clock.now() + milliseconds(500))));
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("into the lock file")));
}

TEST_F(ObserversTest, WaitsLongerThanTheTimeOut) {
  lock(files_);
  static_cast<void>(otherFiles_.readFile(paths.lock, 100));
  run_.clock.advance(milliseconds(551));
  disk_.lockObserver.restsOrEnded(second_);
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("waited 0d 00:00:00.551000 for the lock")));
}

TEST_F(ObserversTest, GivesUpOverAFreeLock) {
  static_cast<void>(files_.readFile(paths.lock, 100));
  disk_.lockObserver.restsOrEnded(first_);
  EXPECT_THAT(run_.violation(), Optional(HasSubstr("had found free")));
}

}  // namespace
}  // namespace lanternfold::simulation
