#include "Tests/PlatformLinux/NetworkNamespace.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace lanternfold {

bool NetworkNamespace::isAllowed() { return geteuid() == 0; }

std::unique_ptr<NetworkNamespace> NetworkNamespace::enter() {
  const int network = open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC);
  const int mounts = open("/proc/thread-self/ns/mnt", O_RDONLY | O_CLOEXEC);
  // From here on the destructor leads back.
  std::unique_ptr<NetworkNamespace> result(new NetworkNamespace(network, mounts));
  const bool isReady = network >= 0 && mounts >= 0 && unshare(CLONE_NEWNET | CLONE_NEWNS) == 0 &&
                       mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                       mount("sysfs", "/sys", "sysfs", 0, nullptr) == 0;
  return isReady ? std::move(result) : nullptr;
}

NetworkNamespace::~NetworkNamespace() {
  const bool isBack = setns(network_, CLONE_NEWNET) == 0 && setns(mounts_, CLONE_NEWNS) == 0;
  close(network_);
  close(mounts_);
  if (!isBack) {
    std::perror("cannot leave the test's network namespace");
    std::abort();
  }
}

bool NetworkNamespace::run(const std::string& command) { return std::system(command.c_str()) == 0; }

std::string NetworkNamespace::outputOf(const std::string& command) {
  std::FILE* const pipe = popen(command.c_str(), "re");
  if (pipe == nullptr) return {};
  std::string text;
  std::array<char, 4096> part{};
  for (std::size_t size = 0; (size = std::fread(part.data(), 1, part.size(), pipe)) > 0;) {
    text.append(part.data(), size);
  }
  return pclose(pipe) == 0 ? text : std::string();
}

}  // namespace lanternfold
