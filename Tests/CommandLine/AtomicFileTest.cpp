#include <csignal>
#include <fstream>
#include <iterator>
#include <sys/resource.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "CommandLine/AtomicFile.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

std::string contentsOf(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class AtomicFileTest : public testing::Test {
 protected:
  std::size_t files() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), {}));
  }

  const TemporaryFolder temporary_;
  const fs::path& folder_ = temporary_.path();
};

TEST_F(AtomicFileTest, WritesANewFileWithOrdinaryPermissions) {
  const mode_t mask = ::umask(022);
  EXPECT_TRUE(writeFileAtomically(folder_ / "a.png", "picture"));
  ::umask(mask);
  EXPECT_EQ(contentsOf(folder_ / "a.png"), "picture");
  EXPECT_EQ(fs::status(folder_ / "a.png").permissions(), fs::perms(0644));
  EXPECT_EQ(files(), 1U);
}

TEST_F(AtomicFileTest, ReplacesAFile) {
  EXPECT_TRUE(writeFileAtomically(folder_ / "a.png", "old"));
  EXPECT_TRUE(writeFileAtomically(folder_ / "a.png", "new"));
  EXPECT_EQ(contentsOf(folder_ / "a.png"), "new");
  EXPECT_EQ(files(), 1U);
}

TEST_F(AtomicFileTest, KeepsThePermissionsOfTheFileItReplaces) {
  EXPECT_TRUE(writeFileAtomically(folder_ / "a.png", "old"));
  for (const fs::perms mode : {fs::perms(0600), fs::perms(0444), fs::perms(0666)}) {
    fs::permissions(folder_ / "a.png", mode);
    EXPECT_TRUE(writeFileAtomically(folder_ / "a.png", "new"));
    EXPECT_EQ(fs::status(folder_ / "a.png").permissions(), mode);
  }
}

TEST_F(AtomicFileTest, FollowsALinkInsteadOfReplacingIt) {
  EXPECT_TRUE(writeFileAtomically(folder_ / "a.png", "old"));
  fs::create_symlink("a.png", folder_ / "link.png");
  EXPECT_TRUE(writeFileAtomically(folder_ / "link.png", "new"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.png"));
  EXPECT_EQ(contentsOf(folder_ / "a.png"), "new");
}

TEST_F(AtomicFileTest, AMissingFolderIsASentence) {
  const auto written = writeFileAtomically(folder_ / "none" / "a.png", "picture");
  ASSERT_FALSE(written);
  EXPECT_THAT(written.error(), testing::HasSubstr("No such file or directory"));
}

TEST_F(AtomicFileTest, AFolderOfThatNameIsASentenceAndLeavesNothingBehind) {
  fs::create_directory(folder_ / "a.png");
  EXPECT_FALSE(writeFileAtomically(folder_ / "a.png", "picture"));
  EXPECT_EQ(files(), 1U);
}

TEST_F(AtomicFileTest, ALoopOfLinksStaysWhatItIs) {
  fs::create_symlink("b.png", folder_ / "a.png");
  fs::create_symlink("a.png", folder_ / "b.png");
  EXPECT_FALSE(writeFileAtomically(folder_ / "a.png", "picture"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "a.png"));
  EXPECT_EQ(files(), 2U);
}

TEST_F(AtomicFileTest, ANameAsLongAsTheFileSystemAllowsIsNotTooLong) {
  const std::string name = std::string(251, 'x') + ".png";
  EXPECT_TRUE(writeFileAtomically(folder_ / name, "picture"));
  EXPECT_EQ(contentsOf(folder_ / name), "picture");
}

TEST_F(AtomicFileTest, ALinkToADeviceDoesNotReplaceTheDevice) {
  fs::create_symlink("/dev/full", folder_ / "full.png");
  const auto written = writeFileAtomically(folder_ / "full.png", "picture");
  ASSERT_FALSE(written);
  EXPECT_THAT(written.error(), testing::HasSubstr("No space left on device"));
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
  fs::create_symlink("/dev/null", folder_ / "null.png");
  EXPECT_TRUE(writeFileAtomically(folder_ / "null.png", "picture"));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(AtomicFileTest, AWriteThatIsCutShortLeavesTheOldFileAndNothingElse) {
  EXPECT_TRUE(writeFileAtomically(folder_ / "a.png", "old"));
  struct rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const struct rlimit small{.rlim_cur = 4096, .rlim_max = before.rlim_max};
  const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const auto written = writeFileAtomically(folder_ / "a.png", std::string(100'000, 'x'));
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
  (void)std::signal(SIGXFSZ, ignored);
  ASSERT_FALSE(written);
  EXPECT_THAT(written.error(), testing::HasSubstr("make room"));
  EXPECT_EQ(contentsOf(folder_ / "a.png"), "old");
  EXPECT_EQ(files(), 1U);
}

}  // namespace
}  // namespace lanternfold
