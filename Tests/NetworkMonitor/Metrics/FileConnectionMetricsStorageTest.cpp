// What only the storage in a file does: loading, saving, locking, another program's saves.
#include <chrono>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/LockFileText.h"
#include "Tests/NetworkMonitor/Metrics/FileStorageTest.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class FileConnectionMetricsStorageTest : public FileStorageTest {};

TEST_F(FileConnectionMetricsStorageTest, HasItsFilesInTheFolderUnderItsName) {
  EXPECT_EQ(storage_.storageUrl(), url);
  EXPECT_EQ(storage_.name(), "default");
  ASSERT_TRUE(storage_.lock());
  ASSERT_TRUE(storage_.save());
  EXPECT_THAT(disk_.paths("/data"), ElementsAre(url, lockUrl));
}

TEST_F(FileConnectionMetricsStorageTest, TwoNamesInOneDirectoryUseFourDistinctFiles) {
  auto widget = opened("widget");
  storage_.registerMetrics(sent(1), "en0", Type::original);
  widget.registerMetrics(sent(2), "en0", Type::original);
  ASSERT_TRUE(storage_.lock() && widget.lock());
  ASSERT_TRUE(storage_.save() && widget.save());
  EXPECT_EQ(disk_.paths("/data").size(), 4U);
  EXPECT_EQ(opened("default").metrics("en0", Type::original), sent(1));
  EXPECT_EQ(opened("widget").metrics("en0", Type::original), sent(2));
  ASSERT_TRUE(widget.unlock());
  EXPECT_EQ(disk_.paths("/data").size(), 3U);
}

TEST_F(FileConnectionMetricsStorageTest, LoadsTheFileWhenItIsCreated) {
  saveElsewhere("en0", sent(7));
  auto storage = opened();
  disk_.beforeStep([](FileStep step, const auto&) -> FakeFileSystem::Verdict {
    EXPECT_EQ(step, FileStep::lookUp) << "the file was read again";
    return std::nullopt;
  });
  EXPECT_EQ(storage.metrics("en0", Type::original), sent(7));
}

TEST_F(FileConnectionMetricsStorageTest, WithoutAFileIsEmptyAndSaysNothing) {
  EXPECT_TRUE(originals().empty());
  disk_.erase("/data");
  EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), IsEmpty());
}

TEST_F(FileConnectionMetricsStorageTest, RegistrationsReachTheFileWithASave) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  EXPECT_EQ(disk_.bytes(url), std::nullopt);
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(1));
  ASSERT_TRUE(storage_.save());
  EXPECT_EQ(disk_.bytes(url), fileOf("en0", sent(1)));
  EXPECT_EQ(opened().metrics("en0", Type::original), sent(1));
}

TEST_F(FileConnectionMetricsStorageTest, LastRegisterDateIsTheFilesModificationDate) {
  disk_.setDateTick(10ms);
  world_.clock.advance(14ms);
  storage_.registerMetrics(sent(1), "en0", Type::original);
  EXPECT_EQ(storage_.lastRegisterDate(), std::nullopt);
  ASSERT_TRUE(storage_.save());
  const auto saved = world_.clock.now() - 4ms;
  EXPECT_EQ(storage_.lastRegisterDate(), saved);
  world_.clock.advance(1h);
  storage_.registerMetrics(sent(2), "en0", Type::original);
  EXPECT_EQ(storage_.lastRegisterDate(), saved);
  saveElsewhere("en0", sent(3));
  EXPECT_EQ(storage_.lastRegisterDate(), saved + 1h - 4ms + 4ms);
  disk_.denyReading("/data");
  EXPECT_EQ(storage_.lastRegisterDate(), std::nullopt);
}

TEST_F(FileConnectionMetricsStorageTest, ReadsWhatAnotherProgramSaved) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  world_.clock.advance(1s);
  saveElsewhere("en1", sent(2));
  EXPECT_EQ(originals(), ConnectionMetricsMap::of({{"en1", sent(2)}}));
  saveElsewhere("en1", sent(3));
  EXPECT_EQ(storage_.metrics("en1", Type::original), sent(3));
}

TEST_F(FileConnectionMetricsStorageTest, RemembersAnInterfaceAfterOneLookAtTheFile) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  world_.clock.advance(1s);
  saveElsewhere("en0", sent(2));
  const ConnectionMetricsStorage::Remembered saved{world_.clock.now(), sent(2), std::nullopt};
  EXPECT_EQ(storage_.remembered("en0"), saved);
  const auto before = disk_.stepCount();
  EXPECT_EQ(storage_.remembered("en0"), saved);
  EXPECT_EQ(disk_.stepCount(), before + 1);
}

TEST_F(FileConnectionMetricsStorageTest, ReadsASecondSaveWithinOneTickOfTheFileSystemsClock) {
  disk_.setDateTick(1h);
  ASSERT_TRUE(storage_.save());
  for (std::uint64_t i = 1; i < 4; ++i) {
    saveElsewhere("en0", sent(i));
    EXPECT_EQ(storage_.metrics("en0", Type::original), sent(i));
  }
}

TEST_F(FileConnectionMetricsStorageTest, ReadsAFileThatGotTheNumberAndTheDateOfTheOneBefore) {
  disk_.setDateTick(1h);
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  // The number stays, as it may when a file system gives that of a removed file out again.
  ASSERT_TRUE(disk_.overwriteFile(url, fileOf("en0", sent(1'000))));
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(1'000));
}

TEST_F(FileConnectionMetricsStorageTest, ReadsAFileThatWasWrittenInPlaceLater) {
  ASSERT_TRUE(storage_.save());
  world_.clock.advance(1s);
  ASSERT_TRUE(disk_.overwriteFile(url, fileOf("en0", sent(5))));
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(5));
}

TEST_F(FileConnectionMetricsStorageTest, ReadsAnotherProgramsSaveAfterTheWallClockWasSetBack) {
  ASSERT_TRUE(storage_.save());
  world_.clock.stepWallClock(-24h);
  saveElsewhere("en0", sent(5));
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(5));
}

// The next save would otherwise put the older counters in the place of the newer ones.
TEST_F(FileConnectionMetricsStorageTest,
       ReadsAnotherProgramsSaveUnderAReusedFileNumberAfterTheWallClockWasSetBack) {
  disk_.setReusesFileNumbers(true);
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  world_.clock.stepWallClock(-1h);
  saveElsewhere("en0", sent(2));
  saveElsewhere("en0", sent(3));
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(3));
}

TEST_F(FileConnectionMetricsStorageTest, ASampleOfNoInterfacesKeepsWhatAnotherProgramSaved) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  world_.clock.advance(1min);
  saveElsewhere("en0", sent(2));
  ASSERT_TRUE(storage_.lock());
  ASSERT_TRUE(storage_.save());
  EXPECT_EQ(opened().metrics("en0", Type::original), sent(2));
}

TEST_F(FileConnectionMetricsStorageTest, KeepsWhatItHoldsWhenTheFileIsRemoved) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  disk_.erase(url);
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(1));
  EXPECT_EQ(storage_.lastRegisterDate(), std::nullopt);
  EXPECT_THAT(world_.log.lines(), IsEmpty());
}

TEST_F(FileConnectionMetricsStorageTest, DoesNotReadItsOwnSaveAgain) {
  disk_.setDateTick(1h);
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  storage_.registerMetrics(sent(2), "en0", Type::original);
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(2));
}

// As a recorder does it: both reads of an interface before its registrations.
TEST_F(FileConnectionMetricsStorageTest,
       AFirstSamplingStepOverAnExistingFileLeavesEveryInterfacesNewCountersInTheFile) {
  constexpr int interfaces = 20;
  ConnectionMetricsData old;
  for (int i = 0; i < interfaces; ++i) {
    for (const Type type : {Type::original, Type::adjusted}) {
      setMetrics(old, "en" + std::to_string(i), type, sent(100));
    }
  }
  disk_.setDateTick(4ms);
  world_.clock.advance(3ms);
  ASSERT_TRUE(disk_.replaceFile(url, encodeConnectionMetricsFile(old)->text));

  auto storage = opened();
  disk_.setStepDuration(1ms);
  ASSERT_TRUE(storage.lock());
  for (std::uint64_t i = 0; i < interfaces; ++i) {
    const std::string name = "en" + std::to_string(i);
    EXPECT_TRUE(storage.lastRegisterDate());
    EXPECT_EQ(storage.metrics(name, Type::original), sent(100));
    EXPECT_EQ(storage.metrics(name, Type::adjusted), sent(100));
    storage.registerMetrics(sent(1000 + i), name, Type::original);
    storage.registerMetrics(sent(2000 + i), name, Type::adjusted);
  }
  ASSERT_TRUE(storage.save());
  ASSERT_TRUE(storage.unlock());

  auto next = opened();
  for (std::uint64_t i = 0; i < interfaces; ++i) {
    const std::string name = "en" + std::to_string(i);
    EXPECT_EQ(next.metrics(name, Type::original), sent(1000 + i)) << name;
    EXPECT_EQ(next.metrics(name, Type::adjusted), sent(2000 + i)) << name;
  }
}

TEST_F(FileConnectionMetricsStorageTest,
       AfterAResetReadsReturnNothingUntilAnotherProgramSavesANewerFile) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  world_.clock.advance(1h);
  storage_.reset();
  EXPECT_TRUE(originals().empty());
  EXPECT_EQ(storage_.metrics("en0", Type::original), std::nullopt);
  EXPECT_EQ(disk_.bytes(url), fileOf("en0", sent(1)));
  EXPECT_TRUE(storage_.lastRegisterDate());
  saveElsewhere("en1", sent(2));
  EXPECT_EQ(originals(), ConnectionMetricsMap::of({{"en1", sent(2)}}));
}

TEST_F(FileConnectionMetricsStorageTest, AfterAResetReadsReturnNothingOfAFileThatWasJustLoaded) {
  saveElsewhere("en0", sent(1));
  auto storage = opened();
  storage.reset();
  EXPECT_TRUE(storage.allMetrics(Type::original).empty());
}

TEST_F(FileConnectionMetricsStorageTest, AfterAResetReadsReturnNothingOfAFileThatWasNotLoadedYet) {
  saveElsewhere("en0", sent(1));
  storage_.reset();
  EXPECT_TRUE(originals().empty());
}

TEST_F(FileConnectionMetricsStorageTest, AResetReachesTheFileWithASave) {
  saveElsewhere("en0", sent(1));
  auto storage = opened();
  storage.reset();
  ASSERT_TRUE(storage.save());
  EXPECT_EQ(disk_.bytes(url), "[]");
}

TEST_F(FileConnectionMetricsStorageTest, TwoProgramsThatTakeTurnsUnderTheLockLoseNothing) {
  disk_.setDateTick(4ms);
  disk_.setStepDuration(100us);
  auto other = opened();
  for (std::uint64_t turn = 1; turn <= 20; ++turn) {
    FileConnectionMetricsStorage& mine = turn % 2 == 0 ? storage_ : other;
    ASSERT_TRUE(mine.lock());
    const auto before = mine.metrics("en0", Type::adjusted).value_or(ConnectionMetrics{});
    EXPECT_EQ(before.sentBytes, turn - 1);
    mine.registerMetrics(sent(turn), "en0", Type::adjusted);
    ASSERT_TRUE(mine.save());
    ASSERT_TRUE(mine.unlock());
  }
}

TEST_F(FileConnectionMetricsStorageTest, LocksForHalfASecondAndUnlocks) {
  ASSERT_TRUE(storage_.lock());
  EXPECT_EQ(disk_.bytes(lockUrl), encodeLockFileText(world_.clock.now() + 500ms));
  EXPECT_TRUE(storage_.unlock());
  EXPECT_EQ(storage_.unlock().error().value, LockError::Case::alreadyUnlocked);
}

TEST_F(FileConnectionMetricsStorageTest, LockHeldByAnotherProgramTimesOut) {
  disk_.putFile(lockUrl, encodeLockFileText(world_.clock.now() + 1h));
  EXPECT_EQ(storage_.lock().error(), LockError{.value = LockError::Case::lockTimeout});
  // The lock is for whoever asks for it: reading and saving go on.
  EXPECT_TRUE(storage_.save());
}

}  // namespace
}  // namespace lanternfold
