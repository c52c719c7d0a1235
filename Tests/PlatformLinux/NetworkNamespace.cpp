#include "Tests/PlatformLinux/NetworkNamespace.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sched.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lanternfold {

namespace {

constexpr const char* ownMounts = "/proc/thread-self/ns/mnt";

// What is mounted from here on stays out of the namespace that this one was copied from. In a
// chroot "/" is no mount, so the way leads over the namespace's real root, where setns goes.
bool makeMountsPrivate() {
  const RootFolder root;
  const int mounts = open(ownMounts, O_RDONLY | O_CLOEXEC);
  const bool isPrivate = mounts >= 0 && setns(mounts, CLONE_NEWNS) == 0 &&
                         mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
  close(mounts);
  return root.goBack() && isPrivate;
}

}  // namespace

RootFolder::RootFolder()
    : root_(open("/", O_PATH | O_DIRECTORY | O_CLOEXEC)),
      working_(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

RootFolder::~RootFolder() {
  close(root_);
  close(working_);
}

bool RootFolder::goBack() const {
  return fchdir(root_) == 0 && chroot(".") == 0 && fchdir(working_) == 0;
}

std::unique_ptr<NetworkNamespace> NetworkNamespace::enter() {
  const int network = open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC);
  const int mounts = open(ownMounts, O_RDONLY | O_CLOEXEC);
  // From here on the destructor leads back.
  std::unique_ptr<NetworkNamespace> result(new NetworkNamespace(network, mounts));
  const bool isReady = network >= 0 && mounts >= 0 && unshare(CLONE_NEWNET | CLONE_NEWNS) == 0 &&
                       makeMountsPrivate() && mount("sysfs", "/sys", "sysfs", 0, nullptr) == 0;
  return isReady ? std::move(result) : nullptr;
}

NetworkNamespace::~NetworkNamespace() {
  // A joined thread still shares the root and working folder for a moment, and whoever shares them
  // may not change its mounts; a copy of one's own does not have to wait for it.
  const bool isBack = setns(network_, CLONE_NEWNET) == 0 && unshare(CLONE_FS) == 0 &&
                      setns(mounts_, CLONE_NEWNS) == 0 && root_.goBack();
  close(network_);
  close(mounts_);
  if (!isBack) {
    std::perror("cannot leave the test's network namespace");
    std::abort();
  }
}

bool NetworkNamespace::run(const std::string& command) {
  std::string shell = "sh";
  std::string option = "-c";
  std::string text = command;
  std::array<char*, 4> arguments = {shell.data(), option.data(), text.data(), nullptr};
  pid_t child = 0;
  if (posix_spawn(&child, "/bin/sh", nullptr, nullptr, arguments.data(), environ) != 0) {
    return false;
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace lanternfold
