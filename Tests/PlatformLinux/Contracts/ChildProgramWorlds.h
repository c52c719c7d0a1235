// Both sides of the seam to started programs, each with programs that do what a test asks for.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/SocketChildProgram.h"
#include "Tests/Support/FakeChildPrograms.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

/// Bounds what would otherwise never end.
inline constexpr std::chrono::seconds programPatience{20};

/// What a program says before it ends, more than one reading takes.
inline const std::string muchSaid = std::string(150'000, 'm') + '\n';

class LinuxProgramWorld {
 public:
  std::unique_ptr<ChildProgram> launchEcho() { return launchScript("exec cat <&3 >&3"); }
  /// Says `muchSaid` and ends with the status 7.
  std::unique_ptr<ChildProgram> launchTalker() {
    return launchScript("head -c 150000 /dev/zero | tr '\\0' m >&3; echo >&3; exit 7");
  }
  std::error_code launchNothing() {
    launcher_ = std::make_unique<SocketChildProgramLauncher>(
        "/nowhere/program", std::vector<std::string>(), loop_, dispatch_.mainQueue());
    return launcher_->launch().error();
  }

  /// Of the shell, which has the socket as descriptor 3, and prints to `output`.
  std::unique_ptr<ChildProgram> launchScript(const std::string& script,
                                             DiagnosticLog* output = nullptr) {
    launcher_ = std::make_unique<SocketChildProgramLauncher>(
        "/bin/sh", std::vector<std::string>{"-c", script, "script"}, loop_, dispatch_.mainQueue(),
        [output] { return output; });
    auto program = launcher_->launch();
    EXPECT_TRUE(program);
    return *std::move(program);
  }
  void destroyLauncher() { launcher_.reset(); }

  bool runUntil(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + programPatience;
    while (!done()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      (void)dispatch_.runMainUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(2));
    }
    return true;
  }

 private:
  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  std::unique_ptr<SocketChildProgramLauncher> launcher_;
};

class FakeProgramWorld {
 public:
  std::unique_ptr<ChildProgram> launchEcho() { return *programs_.launch(); }
  std::unique_ptr<ChildProgram> launchTalker() {
    auto program = *programs_.launch();
    programs_.deliver(muchSaid);
    programs_.end({.exitStatus = 7});
    return program;
  }
  std::error_code launchNothing() {
    programs_.setLaunchError(std::make_error_code(std::errc::no_such_file_or_directory));
    return programs_.launch().error();
  }

  bool runUntil(const std::function<bool()>& done) {
    for (int turn = 0; turn < 100 && !done(); ++turn) {
      dispatch_.runReady();
      for (const std::string& line : programs_.takeLines()) programs_.say(line);
    }
    return done();
  }

 private:
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeChildPrograms programs_{dispatch_.mainQueue()};
};

}  // namespace lanternfold
