// What only the storage in a file does: loading, saving, another program's saves, bad files.
#include <chrono>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/ConnectionMetricsFileJson.h"
#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/LockFileText.h"
#include "Tests/NetworkMonitor/Metrics/StorageWorlds.h"
#include "Tests/Support/SampleConnectionMetrics.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Type = ConnectionMetricsType;

const std::filesystem::path url = "/data/connection-metrics-storage_default.json";
const std::filesystem::path lockUrl = "/data/connection-metrics-storage_default.lock";
const std::string complaint =
    "Failed to restore from file: /data/connection-metrics-storage_default.json - ";

ConnectionMetrics sent(std::uint64_t bytes) { return {.sentBytes = bytes, .mtu = 1500}; }

std::string fileOf(std::string name, const ConnectionMetrics& metrics) {
  return encodeConnectionMetricsFile({{Type::original, {{std::move(name), metrics}}}})->text;
}

class FileConnectionMetricsStorageTest : public testing::Test {
 protected:
  /// A storage of another program, or of this one after a restart.
  FileConnectionMetricsStorage opened(std::string_view name = "default") {
    return {world_.environment, "/data", name};
  }
  /// Another program saves one record.
  void saveElsewhere(const std::string& name, const ConnectionMetrics& metrics) {
    ASSERT_TRUE(world_.disk.replaceFile(url, fileOf(name, metrics)));
  }
  ConnectionMetricsMap originals() { return storage_.allMetrics(Type::original); }

  FileWorld world_;
  FakeFileSystem& disk_ = world_.disk;
  FileConnectionMetricsStorage& storage_ = world_.storage;
};

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

TEST_F(FileConnectionMetricsStorageTest, ReadsASecondSaveWithinOneTickOfTheFileSystemsClock) {
  disk_.setDateTick(1h);
  ASSERT_TRUE(storage_.save());
  for (std::uint64_t i = 1; i < 4; ++i) {
    saveElsewhere("en0", sent(i));
    EXPECT_EQ(storage_.metrics("en0", Type::original), sent(i));
  }
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

TEST_F(FileConnectionMetricsStorageTest, ASaveWithoutARegistrationKeepsWhatAnotherProgramSaved) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  world_.clock.advance(1min);
  saveElsewhere("en0", sent(2));
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

TEST_F(FileConnectionMetricsStorageTest, AnEmptyFileIsReportedOnceAndIgnored) {
  disk_.putFile(url, "");
  auto storage = opened();
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(storage.allMetrics(Type::original).empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "the document is not JSON"));
}

TEST_F(FileConnectionMetricsStorageTest, ATornFileIsReportedAndLeavesWhatIsInMemory) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  const std::string whole = fileOf("en0", sent(2));
  ASSERT_TRUE(disk_.replaceFile(url, whole.substr(0, whole.size() / 2)));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(storage_.metrics("en0", Type::original), sent(1));
  EXPECT_THAT(world_.log.lines(),
              ElementsAre(complaint + "\"0/en0/sentError\" stands before text that is not JSON"));
  ASSERT_TRUE(disk_.replaceFile(url, whole));
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(2));
}

TEST_F(FileConnectionMetricsStorageTest, EachFaultyFileIsReported) {
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(disk_.replaceFile(url, "x"));
    EXPECT_TRUE(originals().empty());
  }
  EXPECT_EQ(world_.log.lines().size(), 2U);
}

TEST_F(FileConnectionMetricsStorageTest, AFileOfALaterFormatIsReportedAndIgnored) {
  disk_.putFile(url, R"({"version":2,"interfaces":{}})");
  EXPECT_TRUE(originals().empty());
  disk_.putFile(url, "[2,{}]");
  EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "the document is not an array",
                                              complaint + "\"[0]\" is not a known case"));
}

TEST_F(FileConnectionMetricsStorageTest, AFileThatLacksAFieldIsReportedAndIgnored) {
  disk_.putFile(url, R"([0,{"en0":{"sentBytes":1}}])");
  EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "\"0/en0/recvBytes\" is missing"));
}

TEST_F(FileConnectionMetricsStorageTest, AFileOf100MebibytesIsReportedOnceAndNotRead) {
  disk_.putFile(url, std::string(100 * 1024 * 1024, ' '));
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "File too large"));
  EXPECT_TRUE(storage_.save());
  EXPECT_EQ(disk_.bytes(url), "[]");
}

TEST_F(FileConnectionMetricsStorageTest, AnUnreadableFileIsReportedOnceAndReadWhenItCanBe) {
  saveElsewhere("en0", sent(1));
  disk_.denyReading(url);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "Permission denied"));
  disk_.allowAll(url);
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(1));
  EXPECT_EQ(world_.log.lines().size(), 1U);
}

TEST_F(FileConnectionMetricsStorageTest, AFolderInTheFilesPlaceIsReportedOnceAndNotReplaced) {
  disk_.makeFolder(url / "precious");
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "Is a directory"));
  EXPECT_EQ(storage_.save(),
            (std::expected<void, MetricsSaveError>(std::unexpected(
                MetricsSaveError{url.string() + " could not be written: Is a directory"}))));
  EXPECT_EQ(disk_.paths(url).size(), 1U);
}

TEST_F(FileConnectionMetricsStorageTest, ASaveThatFailsAtAnyStepLeavesTheOldOrTheNewFileWhole) {
  const std::string old = fileOf("en0", sent(1));
  const std::string changed = fileOf("en0", sent(2));
  for (std::size_t step = 0; step < 6; ++step) {
    SCOPED_TRACE(step);
    disk_.putFile(url, old);
    auto storage = opened();
    storage.registerMetrics(sent(2), "en0", Type::original);
    disk_.failStep(step, std::errc::io_error);
    const auto saved = storage.save();
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().sentence, url.string() + " could not be written: Input/output error");
    EXPECT_EQ(disk_.bytes(url), step < 5 ? old : changed);
    EXPECT_THAT(disk_.paths("/data"), ElementsAre(url));
    EXPECT_TRUE(storage.save());
  }
}

TEST_F(FileConnectionMetricsStorageTest, ACrashAtAnyStepOfASaveLeavesTheOldOrTheNewFileToTheNext) {
  for (std::size_t step = 0; step < 6; ++step) {
    SCOPED_TRACE(step);
    disk_.putFile(url, fileOf("en0", sent(1)));
    auto storage = opened();
    storage.registerMetrics(sent(2), "en0", Type::original);
    disk_.crashAtStep(step);
    EXPECT_FALSE(storage.save());
    disk_.restart();
    EXPECT_EQ(opened().metrics("en0", Type::original), sent(step < 5 ? 1 : 2));
  }
  EXPECT_THAT(world_.log.lines(), IsEmpty());
}

TEST_F(FileConnectionMetricsStorageTest, AFailureAtAnyStepOfALoadIsMadeUpForByTheNextRead) {
  saveElsewhere("en0", sent(1));
  for (std::size_t step = 0; step < 2; ++step) {
    SCOPED_TRACE(step);
    disk_.failStep(step, std::errc::io_error);
    auto storage = opened();
    EXPECT_EQ(storage.metrics("en0", Type::original), sent(1));
  }
  EXPECT_THAT(world_.log.lines(),
              ElementsAre(complaint + "Input/output error", complaint + "Input/output error"));
}

TEST_F(FileConnectionMetricsStorageTest, AFullDiskFailsTheSaveAndKeepsTheOldFile) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  ASSERT_TRUE(storage_.save());
  storage_.registerMetrics(sent(2), "en0", Type::original);
  disk_.setFreeBytes(10);
  EXPECT_EQ(storage_.save().error().sentence,
            url.string() + " could not be written: No space left on device");
  EXPECT_EQ(disk_.bytes(url), fileOf("en0", sent(1)));
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(2));
  disk_.setFreeBytes(std::nullopt);
  EXPECT_TRUE(storage_.save());
  EXPECT_EQ(disk_.bytes(url), fileOf("en0", sent(2)));
}

TEST_F(FileConnectionMetricsStorageTest, AFailedSaveStillReadsWhatAnotherProgramSavesNext) {
  ASSERT_TRUE(storage_.save());
  storage_.registerMetrics(sent(1), "en0", Type::original);
  disk_.failStep(0, std::errc::io_error);
  EXPECT_FALSE(storage_.save());
  saveElsewhere("en0", sent(9));
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(9));
}

TEST_F(FileConnectionMetricsStorageTest, MoreThanCouldBeReadAgainIsNotSaved) {
  ASSERT_TRUE(storage_.save());
  const std::string name(longestConnectionMetricsFileBytes, 'x');
  storage_.registerMetrics(sent(1), name, Type::original);
  EXPECT_EQ(storage_.save().error().sentence,
            url.string() + " could not be written: the document is too long");
  EXPECT_EQ(disk_.bytes(url), "[]");
}

TEST_F(FileConnectionMetricsStorageTest, ARecordWhoseNameIsNotUtf8IsReportedAndLeftOutOfTheFile) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  storage_.registerMetrics(sent(2), "\xFF", Type::original);
  ASSERT_TRUE(storage_.save());
  EXPECT_EQ(disk_.bytes(url), fileOf("en0", sent(1)));
  EXPECT_EQ(storage_.metrics("\xFF", Type::original), sent(2));
  EXPECT_THAT(world_.log.lines(), ElementsAre("Failed to encode ConnectionMetrics"));
}

}  // namespace
}  // namespace lanternfold
