// The messages of a program without a terminal, on the disk.
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "PlatformLinux/System/LogFile.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

class LogFileTest : public testing::Test {
 protected:
  [[nodiscard]] auto open() const { return LogFile::open(folder_ / "log"); }
  [[nodiscard]] std::string written() const { return folder_.bytesOf("log"); }
  static void say(const LogFile& log, const std::string& text) {
    ASSERT_EQ(::write(log.descriptor(), text.data(), text.size()),
              static_cast<ssize_t>(text.size()));
  }

  const TemporaryFolder folder_;
};

TEST_F(LogFileTest, ItIsTheUsersAlone) {
  folder_.write("log", "");
  fs::permissions(folder_ / "log", fs::perms::all);
  ASSERT_TRUE(open());
  EXPECT_EQ(fs::status(folder_ / "log").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(LogFileTest, WhatFormerProgramsHaveSaidStaysUntilItBeginsAnew) {
  folder_.write("log", "before\n");
  const auto log = open();
  ASSERT_TRUE(log);
  say(*log, "now\n");
  EXPECT_EQ(written(), "before\nnow\n");
  log->beginAnew();
  say(*log, "anew\n");
  EXPECT_EQ(written(), "anew\n");
}

TEST_F(LogFileTest, OfALongOneTheNewerHalfStaysInWholeLines) {
  const auto log = open();
  ASSERT_TRUE(log);
  for (int line = 10; line < 20; ++line) say(*log, "line " + std::to_string(line) + "\n");
  log->keepWithin(80);
  EXPECT_EQ(written().size(), 80U);
  log->keepWithin(79);
  EXPECT_EQ(written(), "line 16\nline 17\nline 18\nline 19\n");
  say(*log, "after\n");
  EXPECT_EQ(written(), "line 16\nline 17\nline 18\nline 19\nafter\n");
}

TEST_F(LogFileTest, ALineWithoutEndIsLost) {
  const auto log = open();
  ASSERT_TRUE(log);
  say(*log, std::string(100, 'x'));
  log->keepWithin(50);
  EXPECT_LE(written().size(), 50U);
}

TEST_F(LogFileTest, WhatIsNoFileOfItsOwnIsRefused) {
  fs::create_symlink(folder_ / "elsewhere", folder_ / "log");
  EXPECT_FALSE(open());
  EXPECT_FALSE(fs::exists(folder_ / "elsewhere"));
  fs::remove(folder_ / "log");
  ASSERT_EQ(::mkfifo((folder_ / "log").c_str(), 0600), 0);
  EXPECT_FALSE(open());
}

}  // namespace
}  // namespace lanternfold
