#include <csignal>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Tests/Support/TemporaryFolder.h"
#include "Wiring/FileSoleRecorder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

class FileSoleRecorderTest : public testing::Test {
 protected:
  /// Whether the claim was given; a failure to ask counts as none.
  bool isGiven() { return recorder_.claim(folder_).value_or(nullptr) != nullptr; }

  FileSoleRecorder recorder_;
  const TemporaryFolder temporary_;
  const fs::path& folder_ = temporary_.path();
};

TEST_F(FileSoleRecorderTest, ASecondClaimIsRefusedWhileTheFirstIsHeld) {
  const auto first = recorder_.claim(folder_);
  ASSERT_TRUE(first);
  ASSERT_NE(*first, nullptr);
  const auto second = recorder_.claim(folder_);
  ASSERT_TRUE(second) << "that another recorder runs is an answer, not an error";
  EXPECT_EQ(*second, nullptr);
}

TEST_F(FileSoleRecorderTest, AClaimCanBeTakenAgainWhenItHasBeenGivenUp) {
  EXPECT_TRUE(isGiven());
  EXPECT_TRUE(isGiven());
}

TEST_F(FileSoleRecorderTest, FoldersDoNotExcludeEachOther) {
  fs::create_directory(folder_ / "other");
  const auto first = recorder_.claim(folder_);
  const auto second = recorder_.claim(folder_ / "other");
  EXPECT_NE(first.value(), nullptr);
  EXPECT_NE(second.value(), nullptr);
}

TEST_F(FileSoleRecorderTest, AKilledRecorderHoldsNothing) {
  std::array<int, 2> ready{};
  ASSERT_EQ(::pipe(ready.data()), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const auto claim = recorder_.claim(folder_);
    const char answer = claim && *claim != nullptr ? 'y' : 'n';
    (void)!::write(ready[1], &answer, 1);
    ::pause();
    ::_exit(0);
  }
  char answer = 0;
  ASSERT_EQ(::read(ready[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  EXPECT_FALSE(isGiven());
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_TRUE(isGiven());
  ::close(ready[0]);
  ::close(ready[1]);
}

TEST_F(FileSoleRecorderTest, AnAbsentFolderIsAnError) {
  const auto claim = recorder_.claim(folder_ / "absent");
  ASSERT_FALSE(claim);
  EXPECT_EQ(claim.error(), std::errc::no_such_file_or_directory);
}

TEST_F(FileSoleRecorderTest, AFolderInTheFilesPlaceIsAnError) {
  fs::create_directory(folder_ / "connection-metrics-storage_default.recorder");
  const auto claim = recorder_.claim(folder_);
  ASSERT_FALSE(claim);
  EXPECT_EQ(claim.error(), std::errc::is_a_directory);
}

TEST_F(FileSoleRecorderTest, ALinkInTheFilesPlaceIsNotFollowed) {
  fs::create_symlink(folder_ / "elsewhere",
                     folder_ / "connection-metrics-storage_default.recorder");
  EXPECT_FALSE(recorder_.claim(folder_));
  EXPECT_FALSE(fs::exists(folder_ / "elsewhere"));
}

}  // namespace
}  // namespace lanternfold
