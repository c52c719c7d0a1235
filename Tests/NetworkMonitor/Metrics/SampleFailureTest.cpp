#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/SampleFailure.h"
#include "Support/FileRemedy.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

const std::filesystem::path folder = "/data";
const std::string lockFile = "/data/connection-metrics-storage_default.lock";
const std::string dataFile = "/data/connection-metrics-storage_default.json";

class SampleFailureTest : public testing::Test {
 protected:
  void SetUp() override { disk_.makeFolder(folder); }
  std::string clause(const ConnectionMetricsError& error) {
    return sampleFailure(error, disk_, folder);
  }
  std::string ofSave(std::errc error) {
    const std::error_code cause = std::make_error_code(error);
    return clause(MetricsSaveError{
        .sentence = dataFile + " could not be written: " + cause.message(), .cause = cause});
  }

  SimulatedClock clock_;
  FakeFileSystem disk_{clock_};
};

TEST_F(SampleFailureTest, ALockThatStaysTakenIsNamed) {
  EXPECT_EQ(clause(LockError{.value = LockError::Case::lockTimeout}),
            "another program kept the lock for longer than was waited; if that goes on, remove " +
                lockFile);
}

TEST_F(SampleFailureTest, AFolderInTheLocksPlace) {
  EXPECT_EQ(clause(LockError{.value = LockError::Case::lockFailed,
                             .underlying = std::make_error_code(std::errc::is_a_directory)}),
            "the lock file " + lockFile +
                " could not be written: Is a directory; move that folder away, since a file "
                "belongs there");
}

TEST_F(SampleFailureTest, TheCauseOfALockFileThatCannotBeMadeIsLookedFor) {
  disk_.erase(folder);
  EXPECT_EQ(clause(LockError{.value = LockError::Case::lockFailed}),
            "the lock file " + lockFile +
                " could not be written: No such file or directory; see whether its folder is "
                "still there, or choose another one with --data-dir");
}

TEST_F(SampleFailureTest, LookingForTheCauseLeavesNothingBehindAndTheLockAlone) {
  disk_.putFile(lockFile, "725760000.50000000");
  EXPECT_THAT(clause(LockError{.value = LockError::Case::lockFailed}),
              testing::StartsWith("the lock file " + lockFile));
  EXPECT_EQ(disk_.bytes(lockFile), "725760000.50000000");
  EXPECT_FALSE(disk_.bytes("/data/connection-metrics-storage_default.probe"));
}

TEST_F(SampleFailureTest, WhatIsInTheDataFilesPlaceIsToBeMovedAway) {
  EXPECT_EQ(
      ofSave(std::errc::is_a_directory),
      dataFile +
          " could not be written: Is a directory; move that folder away, since a file belongs "
          "there");
  EXPECT_EQ(ofSave(std::errc::invalid_argument),
            dataFile +
                " could not be written: Invalid argument; move it away, since it is no ordinary "
                "file (a pipe, a socket or a device)");
}

TEST_F(SampleFailureTest, EveryCauseHasItsRemedy) {
  EXPECT_THAT(ofSave(std::errc::too_many_files_open), testing::HasSubstr("ulimit -n"));
  EXPECT_THAT(ofSave(std::errc::too_many_symbolic_link_levels),
              testing::HasSubstr("remove the link"));
  EXPECT_THAT(ofSave(std::errc::filename_too_long), testing::HasSubstr("shorter name"));
  EXPECT_THAT(ofSave(std::errc::no_space_on_device), testing::HasSubstr("make room"));
  EXPECT_THAT(ofSave(std::errc::permission_denied), testing::HasSubstr("check the permissions"));
  EXPECT_THAT(ofSave(std::errc::read_only_file_system), testing::HasSubstr("can be written to"));
}

TEST_F(SampleFailureTest, ASentenceThatSaysWhatToDoStaysAsItIs) {
  const std::string sentence = dataFile + " could not be written: there are too many; remove them";
  EXPECT_EQ(clause(MetricsSaveError{sentence}), sentence);
}

TEST(FileRemedy, ASentenceNamesTheFileTheCauseAndWhatToDo) {
  EXPECT_EQ(
      cannotWrite("/data/a.recorder", std::make_error_code(std::errc::permission_denied)),
      "/data/a.recorder could not be written: Permission denied; check the permissions of the "
      "file and its folder, or choose another folder with --data-dir");
}

}  // namespace
}  // namespace lanternfold
