// What both sides of the seam to started programs promise, and what the Linux side adds.
#include <cerrno>
#include <charconv>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <thread>

#include <gmock/gmock.h>

#include "PlatformLinux/System/FileDescriptor.h"
#include "PlatformLinux/System/ProgramOutput.h"
#include "Tests/PlatformLinux/ChildProcess.h"
#include "Tests/PlatformLinux/Contracts/ChildProgramWorlds.h"
#include "Tests/PlatformLinux/RefusedCall.h"
#include "Tests/Support/RecordingDiagnosticLog.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

template <typename World>
class ChildProgramContract : public testing::Test {
 protected:
  void hold(std::unique_ptr<ChildProgram> program) {
    program_ = std::move(program);
    program_->stream().start({.received = [this](std::string_view bytes) { received_ += bytes; },
                              .ended = [](ByteStream::End) {}});
  }
  void hearEnd() {
    program_->setEndHandler([this](ChildEnd end) {
      ends_.push_back(end);
      receivedAtEnd_ = received_.size();
    });
  }
  bool runUntilEnded() {
    return world_.runUntil([this] { return !ends_.empty(); });
  }

  std::string received_;
  std::size_t receivedAtEnd_ = 0;
  std::vector<ChildEnd> ends_;
  World world_;
  std::unique_ptr<ChildProgram> program_;
};

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxProgramWorld> ? "Linux" : "Fake";
  }
};

using Worlds = testing::Types<LinuxProgramWorld, FakeProgramWorld>;
TYPED_TEST_SUITE(ChildProgramContract, Worlds, WorldNames);

TYPED_TEST(ChildProgramContract, ALineReachesTheProgramAndItsAnswerComesBack) {
  this->hold(this->world_.launchEcho());
  this->program_->stream().send("a line\n");
  EXPECT_TRUE(this->world_.runUntil([this] { return this->received_ == "a line\n"; }));
}

TYPED_TEST(ChildProgramContract, AllThatItSaysIsReceivedBeforeItsEnd) {
  this->hold(this->world_.launchTalker());
  this->hearEnd();
  EXPECT_TRUE(this->runUntilEnded());
  EXPECT_EQ(this->ends_, (std::vector{ChildEnd{.exitStatus = 7}}));
  EXPECT_EQ(this->receivedAtEnd_, muchSaid.size());
}

TYPED_TEST(ChildProgramContract, ItsEndIsToldToAHandlerThatComesLate) {
  this->hold(this->world_.launchTalker());
  EXPECT_TRUE(this->world_.runUntil([this] { return this->received_ == muchSaid; }));
  this->hearEnd();
  EXPECT_TRUE(this->ends_.empty());
  EXPECT_TRUE(this->runUntilEnded());
}

TYPED_TEST(ChildProgramContract, AKilledProgramEndsByASignalOnceAndLater) {
  this->hold(this->world_.launchEcho());
  this->hearEnd();
  this->program_->kill();
  this->program_->kill();
  EXPECT_TRUE(this->ends_.empty());
  EXPECT_TRUE(this->runUntilEnded());
  this->program_->kill();
  (void)this->world_.runUntil([turns = 0]() mutable { return ++turns > 20; });
  EXPECT_EQ(this->ends_, (std::vector{ChildEnd{.exitStatus = std::nullopt, .signal = SIGKILL}}));
}

TYPED_TEST(ChildProgramContract, TheHandlerOfItsEndMayLetGoOfIt) {
  this->hold(this->world_.launchTalker());
  this->program_->setEndHandler([this](ChildEnd end) {
    this->program_.reset();
    this->ends_.push_back(end);
  });
  EXPECT_TRUE(this->runUntilEnded());
}

TYPED_TEST(ChildProgramContract, NothingIsHeardOfAProgramThatWasLetGo) {
  this->hold(this->world_.launchTalker());
  this->hearEnd();
  this->program_.reset();
  (void)this->world_.runUntil([turns = 0]() mutable { return ++turns > 50; });
  EXPECT_EQ(this->received_, "");
  EXPECT_TRUE(this->ends_.empty());
}

TYPED_TEST(ChildProgramContract, AProgramThatIsNotThereIsAnError) {
  EXPECT_EQ(this->world_.launchNothing(), std::errc::no_such_file_or_directory);
}

class SocketChildProgramTest : public ChildProgramContract<LinuxProgramWorld> {
 protected:
  /// What a script says until it ends.
  std::string saidBy(const std::string& script) {
    hold(world_.launchScript(script));
    hearEnd();
    EXPECT_TRUE(runUntilEnded());
    return received_;
  }
  /// The number that a script tells first.
  pid_t numberOfProcess() {
    EXPECT_TRUE(world_.runUntil([this] { return received_.contains('\n'); }));
    pid_t number = 0;
    const auto read =
        std::from_chars(received_.data(), received_.data() + received_.size(), number);
    EXPECT_EQ(read.ec, std::errc());
    return number;
  }
  /// One that has ended and was not reaped is still there.
  static bool isThere(pid_t process) { return ::kill(process, 0) == 0; }
};

TEST_F(SocketChildProgramTest, TheProgramIsToldItsDescriptor) {
  EXPECT_EQ(saidBy("echo $* >&3"), "--service-fd 3\n");
}

TEST_F(SocketChildProgramTest, TheProgramHasNoDescriptorButItsOwn) {
  const FileDescriptor inheritable(::fcntl(STDERR_FILENO, F_DUPFD, 200));
  ASSERT_TRUE(inheritable.isOpen());
  const std::string number = std::to_string(inheritable.get());
  EXPECT_EQ(saidBy("ls /proc/self/fd | grep -x -e 3 -e " + number + " >&3"), "3\n");
}

TEST_F(SocketChildProgramTest, TheProgramHasNothingToRead) {
  EXPECT_EQ(saidBy("readlink /proc/self/fd/0 >&3"), "/dev/null\n");
}

TEST_F(SocketChildProgramTest, ASignalThatTheHostIgnoresEndsTheProgram) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  (void)saidBy("kill -PIPE $$; sleep 20");
  (void)std::signal(SIGPIPE, before);
  EXPECT_EQ(ends_.front().signal, SIGPIPE);
}

TEST_F(SocketChildProgramTest, ASignalThatTheHostBlocksEndsTheProgram) {
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, &before), 0);
  (void)saidBy("kill -TERM $$; sleep 20");
  (void)pthread_sigmask(SIG_SETMASK, &before, nullptr);
  EXPECT_EQ(ends_.front().signal, SIGTERM);
}

TEST_F(SocketChildProgramTest, AProgramThatHasEndedIsNoZombie) {
  (void)saidBy("echo $$ >&3");
  EXPECT_FALSE(isThere(numberOfProcess()));
}

TEST_F(SocketChildProgramTest, TheEndIsToldThoughSomebodyHasInheritedTheSocket) {
  hold(world_.launchScript("sleep 60 & echo $! >&3; exit 3"));
  hearEnd();
  EXPECT_TRUE(runUntilEnded());
  EXPECT_EQ(ends_.front(), ChildEnd{.exitStatus = 3});
  EXPECT_EQ(::kill(numberOfProcess(), SIGKILL), 0);
}

TEST_F(SocketChildProgramTest, AProgramThatIsLetGoLeavesAndIsReaped) {
  hold(world_.launchScript("echo $$ >&3; read line <&3; exit 0"));
  const pid_t process = numberOfProcess();
  program_.reset();
  EXPECT_TRUE(world_.runUntil([process] { return !isThere(process); }));
}

TEST_F(SocketChildProgramTest, AProgramThatDoesNotLeaveIsKilledAndReaped) {
  hold(world_.launchScript("echo $$ >&3; exec sleep 60"));
  const pid_t process = numberOfProcess();
  const auto letGo = std::chrono::steady_clock::now();
  program_.reset();
  EXPECT_TRUE(world_.runUntil([process] { return !isThere(process); }));
  EXPECT_GE(std::chrono::steady_clock::now() - letGo, 2s);
}

TEST_F(SocketChildProgramTest, TheLauncherLeavesNoProgramBehind) {
  hold(world_.launchScript("echo $$ >&3; exec sleep 60"));
  const pid_t process = numberOfProcess();
  program_.reset();
  world_.destroyLauncher();
  EXPECT_FALSE(isThere(process));
}

/// So that a program in the background keeps nobody's terminal open.
TEST_F(SocketChildProgramTest, WhatTheProgramPrintsGoesWhereItIsTold) {
  RecordingDiagnosticLog log;
  hold(world_.launchScript("echo one; echo two >&2; test -S /proc/$$/fd/3 && printf three", &log));
  hearEnd();
  EXPECT_TRUE(runUntilEnded());
  EXPECT_TRUE(world_.runUntil([&log] { return log.lines().size() == 3; }));
  EXPECT_THAT(log.lines(), ElementsAre("one", "two", "three"));
}

/// An extension once filled the disk by what it complained of.
TEST_F(SocketChildProgramTest, OfAProgramThatPrintsWithoutEndTheBeginningIsKept) {
  RecordingDiagnosticLog log;
  hold(world_.launchScript("head -c 1000000 /dev/zero | tr '\\0' m; echo; echo end >&3", &log));
  // It is not held up by what nobody wants to know.
  EXPECT_TRUE(world_.runUntil([this] { return received_ == "end\n"; }));
  EXPECT_TRUE(world_.runUntil([&log] { return log.lines().size() == 2; }));
  EXPECT_THAT(log.lines(),
              ElementsAre(std::string(ProgramOutput::mostBytes, 'm'), HasSubstr("not kept")));
}

TEST_F(SocketChildProgramTest, WhoeverGoesOnPrintingIsLeftBehindWithTheLoop) {
  RecordingDiagnosticLog log;
  LinuxProgramWorld world;
  const auto program = world.launchScript("sleep 5 & echo one", &log);
  EXPECT_TRUE(world.runUntil([&log] { return log.lines().size() == 1; }));
}

TEST_F(SocketChildProgramTest, AProgramThatIsNoProgramIsAnError) {
  EventLoop loop;
  AsioDispatch dispatch(loop);
  SocketChildProgramLauncher launcher("/etc/passwd", {}, loop, dispatch.mainQueue());
  EXPECT_EQ(launcher.launch().error(), std::errc::permission_denied);
}

std::ptrdiff_t countOpenDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                       std::filesystem::directory_iterator());
}

/// Tries a start while the kernel watches no descriptor with a number of 64 to 127, as it would
/// none when too many are watched already; the first one opened has `firstNumber`.
int launchUnwatched(int firstNumber) {
  EventLoop loop;
  AsioDispatch dispatch(loop);
  RecordingDiagnosticLog log;
  SocketChildProgramLauncher launcher("/bin/sh", {"-c", "exec sleep 60"}, loop,
                                      dispatch.mainQueue(), [&log] { return &log; });
  while (::dup(STDERR_FILENO) < firstNumber - 1) continue;
  const RefusedCall refused{.number = SYS_epoll_ctl, .error = ENOSPC, .thirdArgumentBits = 64};
  if (!refused.install()) return 2;
  const auto before = countOpenDescriptors();
  const auto program = launcher.launch();
  if (program || program.error() != std::errc::no_space_on_device) return 3;
  // The loop reads what the program has said to its end first.
  const auto deadline = std::chrono::steady_clock::now() + programPatience;
  while (countOpenDescriptors() != before) {
    if (std::chrono::steady_clock::now() > deadline) return 4;
    std::this_thread::yield();
  }
  return ::waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD ? 0 : 5;
}

/// It was once the end of the host, by an exception, and the program was never reaped.
TEST(UnwatchedChildProgramTest, ADescriptorThatTheKernelDoesNotWatchIsAnError) {
  constexpr int ofItsSocket = 64;
  constexpr int ofItsOutput = ofItsSocket - 2;
  constexpr int ofItsEnd = ofItsOutput - 2;
  for (const int firstNumber : {ofItsSocket, ofItsOutput, ofItsEnd}) {
    ChildProcess child([firstNumber] { return launchUnwatched(firstNumber); });
    EXPECT_EQ(child.wait(), 0) << firstNumber;
  }
}

}  // namespace
}  // namespace lanternfold
