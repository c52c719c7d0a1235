// The storage in a file when the file is none, or the disk fails.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/NetworkMonitor/Metrics/FileStorageTest.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string complaint =
    "Failed to restore from file: /data/connection-metrics-storage_default.json - ";

/// A look at the file and the name that it is kept under.
constexpr std::size_t stepsBeforeTheSave = 2;

class FileConnectionMetricsStorageFaultsTest : public FileStorageTest {};

TEST_F(FileConnectionMetricsStorageFaultsTest, AnEmptyFileIsReportedOnceAndIgnored) {
  disk_.putFile(url, "");
  auto storage = opened();
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(storage.allMetrics(Type::original).empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "the document is not JSON"));
}

TEST_F(FileConnectionMetricsStorageFaultsTest, ATornFileIsReportedAndLeavesWhatIsInMemory) {
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

TEST_F(FileConnectionMetricsStorageFaultsTest, EachFaultyFileIsReported) {
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(disk_.replaceFile(url, "x"));
    EXPECT_TRUE(originals().empty());
  }
  EXPECT_EQ(world_.log.lines().size(), 2U);
}

TEST_F(FileConnectionMetricsStorageFaultsTest, AFileOfALaterFormatIsReportedAndIgnored) {
  disk_.putFile(url, R"({"version":2,"interfaces":{}})");
  EXPECT_TRUE(originals().empty());
  disk_.putFile(url, "[2,{}]");
  EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "the document is not an array",
                                              complaint + "\"[0]\" is not a known case"));
}

TEST_F(FileConnectionMetricsStorageFaultsTest, AFileThatLacksAFieldIsReportedAndIgnored) {
  disk_.putFile(url, R"([0,{"en0":{"sentBytes":1}}])");
  EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "\"0/en0/recvBytes\" is missing"));
}

TEST_F(FileConnectionMetricsStorageFaultsTest, AFileOf100MebibytesIsReportedOnceAndNotRead) {
  disk_.putFile(url, std::string(100 * 1024 * 1024, ' '));
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "File too large"));
  EXPECT_TRUE(storage_.save());
  EXPECT_EQ(disk_.bytes(url), "[]");
}

TEST_F(FileConnectionMetricsStorageFaultsTest, AFaultyFileIsKeptAsideOnceWhenItIsReplaced) {
  disk_.putFile(url, "precious");
  auto storage = opened();
  storage.registerMetrics(sent(1), "en0", Type::original);
  disk_.failStep(stepsBeforeTheSave, std::errc::io_error);
  EXPECT_FALSE(storage.save());
  EXPECT_EQ(disk_.bytes(url), "precious");
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(storage.save());
  EXPECT_EQ(disk_.bytes(url), fileOf("en0", sent(1)));
  const auto kept = std::string(url) + ".damaged-1";
  EXPECT_EQ(disk_.bytes(kept), "precious");
  EXPECT_THAT(disk_.paths("/data"), ElementsAre(url, kept));
  EXPECT_THAT(world_.log.lines(),
              ElementsAre(complaint + "the document is not JSON",
                          "The file that could not be restored was kept as: " + kept));
}

TEST_F(FileConnectionMetricsStorageFaultsTest, AFaultyFileThatIsGoneAtTheSaveIsNotMissed) {
  disk_.putFile(url, "precious");
  auto storage = opened();
  disk_.erase(url);
  EXPECT_TRUE(storage.save());
  EXPECT_THAT(disk_.paths("/data"), ElementsAre(url));
}

TEST_F(FileConnectionMetricsStorageFaultsTest, AFaultyFileIsKeptAsideAlsoAfterAReset) {
  disk_.putFile(url, "precious");
  auto storage = opened();
  storage.reset();
  EXPECT_TRUE(storage.save());
  EXPECT_EQ(disk_.bytes(url), "[]");
  EXPECT_EQ(disk_.bytes(std::string(url) + ".damaged-1"), "precious");
}

TEST_F(FileConnectionMetricsStorageFaultsTest, AFileThatWasReadAfterAllIsNotKeptAside) {
  saveElsewhere("en0", sent(1));
  disk_.denyReading(url);
  EXPECT_TRUE(originals().empty());
  disk_.allowAll(url);
  EXPECT_EQ(originals().size(), 1U);
  EXPECT_TRUE(storage_.save());
  EXPECT_THAT(disk_.paths("/data"), ElementsAre(url));
}

TEST_F(FileConnectionMetricsStorageFaultsTest, WithTwentyFilesKeptAsideTheNextIsNotReplaced) {
  for (int i = 0; i < 20; ++i) {
    disk_.putFile(url, "precious");
    EXPECT_TRUE(originals().empty());
    EXPECT_TRUE(storage_.save());
  }
  disk_.putFile(url, "the last");
  EXPECT_TRUE(originals().empty());
  EXPECT_EQ(storage_.save().error().sentence,
            url.string() +
                " could not be written: it could not be restored, and there are too many kept "
                "aside already; look into the files beside it that end in \".damaged-\" and a "
                "number, and remove them");
  EXPECT_EQ(disk_.bytes(url), "the last");
}

TEST_F(FileConnectionMetricsStorageFaultsTest, AnUnreadableFileIsReportedOnceAndReadWhenItCanBe) {
  saveElsewhere("en0", sent(1));
  disk_.denyReading(url);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "Permission denied"));
  disk_.allowAll(url);
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(1));
  EXPECT_EQ(world_.log.lines().size(), 1U);
}

TEST_F(FileConnectionMetricsStorageFaultsTest, AFolderInTheFilesPlaceIsReportedOnceAndNotReplaced) {
  disk_.makeFolder(url / "precious");
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(originals().empty());
  EXPECT_THAT(world_.log.lines(), ElementsAre(complaint + "Is a directory"));
  EXPECT_EQ(storage_.save(),
            (std::expected<void, MetricsSaveError>(std::unexpected(
                MetricsSaveError{url.string() + " could not be written: Is a directory",
                                 std::make_error_code(std::errc::is_a_directory)}))));
  EXPECT_EQ(disk_.paths(url).size(), 1U);
}

TEST_F(FileConnectionMetricsStorageFaultsTest,
       ASaveThatFailsAtAnyStepLeavesTheOldOrTheNewFileWhole) {
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

TEST_F(FileConnectionMetricsStorageFaultsTest,
       ACrashAtAnyStepOfASaveLeavesTheOldOrTheNewFileToTheNext) {
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

TEST_F(FileConnectionMetricsStorageFaultsTest, AFailureAtAnyStepOfALoadIsMadeUpForByTheNextRead) {
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

TEST_F(FileConnectionMetricsStorageFaultsTest, AFullDiskFailsTheSaveAndKeepsTheOldFile) {
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

TEST_F(FileConnectionMetricsStorageFaultsTest, AFailedSaveStillReadsWhatAnotherProgramSavesNext) {
  ASSERT_TRUE(storage_.save());
  disk_.failStep(0, std::errc::io_error);
  EXPECT_FALSE(storage_.save());
  saveElsewhere("en0", sent(9));
  EXPECT_EQ(storage_.metrics("en0", Type::original), sent(9));
}

TEST_F(FileConnectionMetricsStorageFaultsTest, MoreThanCouldBeReadAgainIsNotSaved) {
  ASSERT_TRUE(storage_.save());
  const std::string name(longestConnectionMetricsFileBytes, 'x');
  storage_.registerMetrics(sent(1), name, Type::original);
  EXPECT_EQ(storage_.save().error().sentence,
            url.string() + " could not be written: the document is too long");
  EXPECT_EQ(disk_.bytes(url), "[]");
}

TEST_F(FileConnectionMetricsStorageFaultsTest,
       ARecordWhoseNameIsNotUtf8IsReportedAndLeftOutOfTheFile) {
  storage_.registerMetrics(sent(1), "en0", Type::original);
  storage_.registerMetrics(sent(2), "\xFF", Type::original);
  ASSERT_TRUE(storage_.save());
  EXPECT_EQ(disk_.bytes(url), fileOf("en0", sent(1)));
  EXPECT_EQ(storage_.metrics("\xFF", Type::original), sent(2));
  EXPECT_THAT(world_.log.lines(), ElementsAre("Failed to encode ConnectionMetrics"));
}

}  // namespace
}  // namespace lanternfold
