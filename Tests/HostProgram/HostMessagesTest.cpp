// Where a host without a terminal leaves its messages, and how long that file becomes.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/HostMessages.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

constexpr std::size_t megabyte = std::size_t{1024} * 1024;

class HostMessagesTest : public testing::Test {
 protected:
  HostMessagesTest() { ::setenv("XDG_STATE_HOME", folder_.path().c_str(), 1); }
  ~HostMessagesTest() override { ::unsetenv("XDG_STATE_HOME"); }

  [[nodiscard]] std::string kept() const { return folder_.bytesOf(file_); }
  [[nodiscard]] std::string own() const { return folder_.bytesOf("own"); }

  const TemporaryFolder folder_;
  const std::filesystem::path file_ =
      std::filesystem::path("net.quernaple.LanternfoldX") / "host.log";
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> terminal_{
      std::fopen((folder_ / "own").c_str(), "a"), &std::fclose};
  StreamDiagnosticLog log_{terminal_.get()};
};

TEST_F(HostMessagesTest, AMessageOfMoreThanAMegabyteLeavesAtMostAMegabyte) {
  HostMessages messages(true, log_);
  messages.begin();
  messages.ofNextProgram()->line(std::string(3 * megabyte, 'x'));
  EXPECT_LE(kept().size(), megabyte);
  messages.ofNextProgram()->line("the next one");
  EXPECT_THAT(kept(), EndsWith("the next one\n"));
}

TEST_F(HostMessagesTest, ManyMessagesLeaveTheNewestMegabyteAtMost) {
  HostMessages messages(true, log_);
  messages.begin();
  DiagnosticLog* const program = messages.ofNextProgram();
  for (int number = 0; number < 40; ++number) {
    program->line(std::to_string(number) + std::string(megabyte / 16, 'x'));
    ASSERT_LE(kept().size(), megabyte);
  }
  EXPECT_GE(kept().size(), megabyte / 4);
  EXPECT_THAT(kept(), HasSubstr("\n39x"));
}

/// A library of the host, say, which writes to standard error.
TEST_F(HostMessagesTest, WhatIsWrittenToTheFileItselfGoesWithTheNextMessageOfTheHost) {
  HostMessages messages(true, log_);
  messages.begin();
  const std::string much(3 * megabyte, 'x');
  ASSERT_EQ(::write(*messages.descriptor(), much.data(), much.size()),
            static_cast<ssize_t>(much.size()));
  log_.line("something of the host");
  EXPECT_LE(kept().size(), megabyte);
}

TEST_F(HostMessagesTest, OnlyTheSoleHostForgetsWhatTheLastOneSaid) {
  {
    HostMessages messages(true, log_);
    messages.begin();
    messages.ofNextProgram()->line("of the last host");
  }
  HostMessages messages(true, log_);
  EXPECT_EQ(kept(), "of the last host\n");
  messages.begin();
  EXPECT_EQ(kept(), "");
}

TEST_F(HostMessagesTest, AHostWithATerminalHasNoFile) {
  HostMessages messages(false, log_);
  messages.begin();
  EXPECT_EQ(messages.descriptor(), std::nullopt);
  EXPECT_EQ(messages.ofNextProgram(), nullptr);
  EXPECT_FALSE(std::filesystem::exists(folder_ / file_));
}

TEST_F(HostMessagesTest, WhereThereIsNoFolderALineSaysSoAndTheTerminalIsNotKept) {
  folder_.write(file_.parent_path(), "in the way");
  HostMessages messages(true, log_);
  messages.begin();
  EXPECT_THAT(own(), HasSubstr("will be lost: "));
  struct stat status{};
  ASSERT_EQ(::fstat(messages.descriptor().value(), &status), 0);
  EXPECT_TRUE(S_ISCHR(status.st_mode));
  messages.ofNextProgram()->line("into nothing");
}

}  // namespace
}  // namespace lanternfold
