// The host as a process of its own: scripts stand for it.
#include <array>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Tests/Support/TemporaryFolder.h"
#include "Wiring/ProcessHostStarter.h"
#include "Wiring/StartNotice.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class ProcessHostStarterTest : public testing::Test {
 protected:
  /// The host does what `script` says, which is for the shell. Its arguments are --started-fd, the
  /// number, and those that it is given.
  void install(const std::string& script) {
    const fs::path program = folder_ / "lanternfold-widget-host";
    std::ofstream(program) << "#!/bin/sh\ncd '" << folder_.path().string() << "'\n" << script;
    fs::permissions(program, fs::perms::owner_all);
  }
  [[nodiscard]] auto startDetached(const std::vector<std::string>& arguments = {}) {
    return ProcessHostStarter(folder_.path(), limit_).startDetached(arguments);
  }
  void expectFailure(ExitStatus status, const std::string& text) {
    const auto started = startDetached();
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error().status, status);
    EXPECT_THAT(started.error().sentence, HasSubstr(text));
  }
  [[nodiscard]] std::string written() const { return folder_.bytesOf("written"); }
  /// One that has written its number into "process".
  [[nodiscard]] bool isHostThere() const {
    std::string process = folder_.bytesOf("process");
    EXPECT_FALSE(process.empty());
    process.pop_back();
    return fs::exists("/proc/" + process);
  }

  TemporaryFolder folder_;
  std::chrono::milliseconds limit_ = std::chrono::seconds(30);
};

TEST_F(ProcessHostStarterTest, ReturnsWhenTheHostHasSaidThatItHasStarted) {
  install("echo \"$1\" \"$3\" \"$4\" >written; printf s >&\"$2\"; exec sleep 5 >&- 2>&-");
  ASSERT_TRUE(startDetached({"--data-dir=/a b", "--skip-geoip"}));
  EXPECT_EQ(written(), "--started-fd --data-dir=/a b --skip-geoip\n");
}

TEST_F(ProcessHostStarterTest, AHostThatHandsOverToAnotherIsDone) {
  install("exit 0");
  EXPECT_TRUE(startDetached());
}

TEST_F(ProcessHostStarterTest, AHostThatFailsHasSaidWhy) {
  install("exit 1");
  expectFailure(ExitStatus::failed, "");
  EXPECT_EQ(startDetached().error().sentence, "");
  install("exit 2");
  expectFailure(ExitStatus::badArguments, "");
  install("exit 127");
  expectFailure(ExitStatus::failed, "");
}

TEST_F(ProcessHostStarterTest, AHostThatIsKilledIsAFailure) {
  install("kill -9 $$");
  expectFailure(ExitStatus::failed, "ended by the signal 9");
}

TEST_F(ProcessHostStarterTest, AHostThatSaysNothingIsEnded) {
  install("trap 'echo ended >written; exit' TERM; echo $$ >process; sleep 5 & wait");
  limit_ = std::chrono::milliseconds(300);
  expectFailure(ExitStatus::failed, "has shown none");
  EXPECT_EQ(written(), "ended\n");
  EXPECT_FALSE(isHostThere()) << "not even as a process that nobody reaps";
}

/// Widgets once came minutes after their program had been given up.
TEST_F(ProcessHostStarterTest, AHostThatDoesNotEvenEndIsKilled) {
  install("trap '' TERM; echo $$ >process; exec sleep 60");
  limit_ = std::chrono::milliseconds(300);
  expectFailure(ExitStatus::failed, "has shown none");
  EXPECT_FALSE(isHostThere());
}

/// Its end of the pipe is gone, and it is not.
TEST_F(ProcessHostStarterTest, AHostThatClosesThePipeAndHangsIsWaitedForNoLonger) {
  install("trap 'exit' TERM; exec 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&-; sleep 60 & wait");
  limit_ = std::chrono::milliseconds(500);
  const auto begin = std::chrono::steady_clock::now();
  expectFailure(ExitStatus::failed, "has shown none");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(ProcessHostStarterTest, TheHostHasASessionOfItsOwnAndNoInput) {
  install(
      "cut -d' ' -f6 /proc/$$/stat >session; echo $$ >process; readlink /proc/$$/fd/0 >input\n"
      "printf s >&\"$2\"");
  ASSERT_TRUE(startDetached());
  EXPECT_EQ(folder_.bytesOf("session"), folder_.bytesOf("process"));
  EXPECT_EQ(folder_.bytesOf("input"), "/dev/null\n");
}

TEST_F(ProcessHostStarterTest, WithoutTheProgramItSaysWhatToInstall) {
  expectFailure(ExitStatus::failed, "there is no \"" + folder_.path().string().substr(0, 10));
  EXPECT_THAT(ProcessHostStarter(folder_.path()).become({}).sentence, HasSubstr("install"));
}

TEST_F(ProcessHostStarterTest, AProgramThatMayNotRunIsNamed) {
  install("exit 0");
  fs::permissions(folder_ / "lanternfold-widget-host", fs::perms::owner_read);
  expectFailure(ExitStatus::failed, "Permission denied");
  EXPECT_THAT(ProcessHostStarter(folder_.path()).become({}).sentence,
              HasSubstr("Permission denied"));
}

TEST_F(ProcessHostStarterTest, TheHostTakesThePlaceOfTheProgram) {
  install("echo $$ \"$@\" >written; exit 7");
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    (void)ProcessHostStarter(folder_.path()).become({"--skip-geoip"});
    ::_exit(1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(WEXITSTATUS(status), 7);
  EXPECT_EQ(written(), std::to_string(child) + " --skip-geoip\n");
}

class StartNoticeTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(::pipe(notice_.data()), 0);
    ASSERT_EQ(::pipe(output_.data()), 0);
  }
  void TearDown() override {
    for (const int descriptor : {notice_[0], output_[0]}) (void)::close(descriptor);
  }
  /// Runs `work` in a process of its own whose standard output and error are a pipe.
  void runApart(const std::function<void()>& work) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      (void)::dup2(output_[1], STDOUT_FILENO);
      (void)::dup2(output_[1], STDERR_FILENO);
      (void)::close(output_[1]);
      work();
      ::_exit(0);
    }
    (void)::close(notice_[1]);
    (void)::close(output_[1]);
    (void)::waitpid(child, nullptr, 0);
  }
  static std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 64> bytes{};
    for (ssize_t count = 0; (count = ::read(descriptor, bytes.data(), bytes.size())) > 0;) {
      text.append(bytes.data(), static_cast<std::size_t>(count));
    }
    return text;
  }
  static void say(const char* word) {
    for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
      (void)!::write(descriptor, word, std::char_traits<char>::length(word));
    }
  }

  std::array<int, 2> notice_{};
  std::array<int, 2> output_{};
};

TEST_F(StartNoticeTest, WhoWaitsHearsOfTheStartOnceAndOfNothingThatIsSaidLater) {
  runApart([this] {
    StartNotice notice(notice_[1]);
    say("before ");
    notice.tell(std::nullopt);
    notice.tell(std::nullopt);
    say("after ");
  });
  EXPECT_EQ(readAll(notice_[0]), "s");
  EXPECT_EQ(readAll(output_[0]), "before before ");
}

TEST_F(StartNoticeTest, LaterMessagesGoWhereTheyAreToBeFound) {
  const TemporaryFolder folder;
  folder.write("messages", "");
  runApart([this, &folder] {
    StartNotice notice(notice_[1]);
    say("before ");
    notice.tell(::open((folder / "messages").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    say("after ");
  });
  EXPECT_EQ(readAll(output_[0]), "before before ");
  EXPECT_EQ(folder.bytesOf("messages"), "after ");
}

/// A number that is not open would be that of the next file, and the notice be written into it.
TEST_F(StartNoticeTest, OnlyTheWritingEndOfAPipeCanBeToldTo) {
  EXPECT_TRUE(StartNotice::canBeToldTo(notice_[1]));
  EXPECT_FALSE(StartNotice::canBeToldTo(notice_[0]));
  const int file = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  EXPECT_FALSE(StartNotice::canBeToldTo(file));
  (void)::close(file);
  EXPECT_FALSE(StartNotice::canBeToldTo(file));
}

TEST_F(StartNoticeTest, WithoutANoticeThePipeIsMerelyClosed) {
  runApart([this] { const StartNotice notice(notice_[1]); });
  EXPECT_EQ(readAll(notice_[0]), "");
}

TEST_F(StartNoticeTest, WhereNobodyWaitsEverythingIsSaid) {
  runApart([] {
    StartNotice notice(std::nullopt);
    notice.tell(std::nullopt);
    say("after ");
  });
  EXPECT_EQ(readAll(output_[0]), "after after ");
}

TEST_F(StartNoticeTest, ProgramsThatAreStartedDoNotKeepThePipeOpen) {
  const StartNotice notice(notice_[1]);
  EXPECT_EQ(::fcntl(notice_[1], F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

}  // namespace
}  // namespace lanternfold
