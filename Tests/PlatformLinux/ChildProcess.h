// A second process that runs a piece of a test.
#pragma once

#include <cerrno>
#include <csignal>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

namespace lanternfold {

/// A copy of the test's process, made while it has no other threads. `work` gives the child's
/// status; whatever it expects must go into that.
class ChildProcess {
 public:
  explicit ChildProcess(const std::function<int()>& work) : process_(::fork()) {
    if (process_ == 0) ::_exit(work());
    EXPECT_GT(process_, 0);
  }
  ~ChildProcess() {
    if (process_ > 0) kill();
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Its status once it ended; 256 and the signal's number when one ended it.
  int wait() {
    int status = 0;
    while (::waitpid(process_, &status, 0) < 0) {
      if (errno != EINTR) return -1;
    }
    process_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 256 + WTERMSIG(status);
  }
  /// At once, whatever it is doing.
  int kill() {
    ::kill(process_, SIGKILL);
    return wait();
  }

 private:
  pid_t process_;
};

}  // namespace lanternfold
