// The fake file system's faults: what a program finds after each of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;

constexpr std::size_t stepsOfReplaceFile = 6;

class FakeFileSystemTest : public testing::Test {
 protected:
  void SetUp() override { disk_.makeFolder("/data"); }

  SimulatedClock clock_;
  FakeFileSystem disk_{clock_};
};

TEST_F(FakeFileSystemTest, ReplaceFileTakesTheStepsThatTheTestsBelowCount) {
  const std::size_t before = disk_.stepCount();
  ASSERT_TRUE(disk_.replaceFile("/data/file", "new"));
  EXPECT_EQ(disk_.stepCount() - before, stepsOfReplaceFile);
}

TEST_F(FakeFileSystemTest, AFailureAtAnyStepOfAReplacementLeavesTheOldOrTheNewFileAlone) {
  for (std::size_t step = 0; step < stepsOfReplaceFile; ++step) {
    SCOPED_TRACE(step);
    disk_.putFile("/data/file", "old");
    disk_.failStep(step, std::errc::io_error);
    const auto replaced = disk_.replaceFile("/data/file", "new");
    ASSERT_FALSE(replaced);
    EXPECT_EQ(replaced.error(), std::errc::io_error);
    EXPECT_EQ(disk_.bytes("/data/file"), step < 5 ? "old" : "new");
    EXPECT_THAT(disk_.paths("/data"), ElementsAre("/data/file"));
  }
}

TEST_F(FakeFileSystemTest, ACrashAtAnyStepOfAReplacementLeavesTheOldOrTheNewFile) {
  for (std::size_t step = 0; step < stepsOfReplaceFile; ++step) {
    SCOPED_TRACE(step);
    disk_.erase("/data");
    disk_.putFile("/data/file", "old");
    disk_.crashAtStep(step);
    ASSERT_FALSE(disk_.replaceFile("/data/file", "new"));
    EXPECT_TRUE(disk_.hasCrashed());
    EXPECT_EQ(disk_.attributes("/data/file").error(), std::errc::owner_dead);
    disk_.restart();
    EXPECT_EQ(disk_.bytes("/data/file"), step < 5 ? "old" : "new");
    EXPECT_TRUE(disk_.attributes("/data/file"));
  }
}

TEST_F(FakeFileSystemTest, ACrashLeavesTheTemporaryFileBehind) {
  disk_.crashAtStep(2);
  ASSERT_FALSE(disk_.replaceFile("/data/file", "0123456789"));
  ASSERT_EQ(disk_.paths("/data").size(), 1U);
  EXPECT_EQ(disk_.bytes(disk_.paths("/data").front()), "01234");
}

TEST_F(FakeFileSystemTest, AFailureWithinAnOverwriteLeavesAPart) {
  disk_.putFile("/data/file", "old");
  disk_.failStep(2, std::errc::io_error);
  ASSERT_FALSE(disk_.overwriteFile("/data/file", "0123456789"));
  EXPECT_EQ(disk_.bytes("/data/file"), "01234");
}

TEST_F(FakeFileSystemTest, AFullDiskTakesWhatFitsAndGivesRoomBackForWhatIsRemoved) {
  disk_.putFile("/data/file", "1234");
  disk_.setFreeBytes(3);
  EXPECT_EQ(disk_.replaceFile("/data/file", "abcd").error(), std::errc::no_space_on_device);
  EXPECT_EQ(disk_.bytes("/data/file"), "1234");
  EXPECT_EQ(disk_.overwriteFile("/data/file", "12345678").error(), std::errc::no_space_on_device);
  EXPECT_EQ(disk_.bytes("/data/file"), "1234567");
  ASSERT_TRUE(disk_.removeFile("/data/file"));
  EXPECT_TRUE(disk_.replaceFile("/data/file", "1234567"));
}

TEST_F(FakeFileSystemTest, PermissionsAreTheFilesOwnOrItsFolders) {
  disk_.putFile("/data/file", "old");
  disk_.denyReading("/data/file");
  disk_.denyWriting("/data/file");
  EXPECT_TRUE(disk_.attributes("/data/file"));
  EXPECT_EQ(disk_.readFile("/data/file", 10).error(), std::errc::permission_denied);
  EXPECT_EQ(disk_.overwriteFile("/data/file", "").error(), std::errc::permission_denied);
  EXPECT_EQ(disk_.createEmptyFile("/data/file").error(), std::errc::permission_denied);
  EXPECT_TRUE(disk_.replaceFile("/data/file", "new"));

  disk_.denyWriting("/data");
  EXPECT_EQ(disk_.replaceFile("/data/file", "").error(), std::errc::permission_denied);
  EXPECT_EQ(disk_.removeFile("/data/file").error(), std::errc::permission_denied);
  EXPECT_EQ(disk_.createEmptyFile("/data/other").error(), std::errc::permission_denied);
  EXPECT_TRUE(disk_.overwriteFile("/data/file", "newer"));

  disk_.denyReading("/data");
  EXPECT_EQ(disk_.attributes("/data/file").error(), std::errc::permission_denied);
  disk_.allowAll("/data");
  EXPECT_EQ(disk_.readFile("/data/file", 10)->bytes, "newer");
}

TEST_F(FakeFileSystemTest, WhatIsNoFileIsNoneToAnyOperation) {
  disk_.makeFolder("/data/folder");
  disk_.putSpecialFile("/data/pipe");
  EXPECT_TRUE(disk_.attributes("/data/folder"));
  EXPECT_EQ(disk_.readFile("/data/folder", 10).error(), std::errc::is_a_directory);
  EXPECT_EQ(disk_.replaceFile("/data/folder", "").error(), std::errc::is_a_directory);
  EXPECT_EQ(disk_.createEmptyFile("/data/folder").error(), std::errc::is_a_directory);
  EXPECT_EQ(disk_.overwriteFile("/data/folder", "").error(), std::errc::is_a_directory);
  EXPECT_EQ(disk_.removeFile("/data/folder").error(), std::errc::is_a_directory);
  EXPECT_EQ(disk_.readFile("/data/pipe", 10).error(), std::errc::invalid_argument);
  EXPECT_EQ(disk_.readFile("/data/pipe/below", 10).error(), std::errc::not_a_directory);
  EXPECT_EQ(disk_.replaceFile("/nowhere/file", "").error(), std::errc::no_such_file_or_directory);
}

TEST_F(FakeFileSystemTest, DatesAreWholeTicksAndAReplacementHasANumberOfItsOwn) {
  using namespace std::chrono_literals;
  disk_.setDateTick(10ms);
  clock_.advance(14ms);
  const auto first = disk_.replaceFile("/data/file", "a");
  clock_.advance(1ms);
  const auto second = disk_.replaceFile("/data/file", "b");
  ASSERT_TRUE(first && second);
  EXPECT_EQ(first->modificationDate, clock_.now() - 5ms);
  EXPECT_EQ(second->modificationDate, first->modificationDate);
  EXPECT_NE(second->fileNumber, first->fileNumber);
}

TEST_F(FakeFileSystemTest, AnotherProgramMayComeInBetweenSteps) {
  disk_.putFile("/data/file", "first");
  disk_.beforeStep([this](FileStep step, const auto& path) -> FakeFileSystem::Verdict {
    if (step == FileStep::read) {
      EXPECT_TRUE(disk_.replaceFile(path, "second"));
    }
    return std::nullopt;
  });
  EXPECT_EQ(disk_.readFile("/data/file", 10)->bytes, "first");
  EXPECT_EQ(disk_.bytes("/data/file"), "second");
}

}  // namespace
}  // namespace lanternfold
