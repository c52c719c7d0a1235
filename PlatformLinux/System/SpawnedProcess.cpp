#include "PlatformLinux/System/SpawnedProcess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "PlatformLinux/System/ProcessDescriptor.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

std::error_code systemError(int number) { return {number, std::generic_category()}; }

/// What becomes of the descriptors between the start of the process and that of its program.
class DescriptorsAtStart {
 public:
  DescriptorsAtStart(int socket, std::optional<int> output) {
    require(::posix_spawn_file_actions_init(&actions_));
    // First: the socket may take the number that `output` has here.
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
      if (output) require(::posix_spawn_file_actions_adddup2(&actions_, *output, stream));
    }
    require(::posix_spawn_file_actions_adddup2(&actions_, socket, SpawnedProcess::socketNumber));
    require(::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
    // Libraries open descriptors that are not marked for being closed.
    require(
        ::posix_spawn_file_actions_addclosefrom_np(&actions_, SpawnedProcess::socketNumber + 1));
  }
  ~DescriptorsAtStart() { ::posix_spawn_file_actions_destroy(&actions_); }
  DescriptorsAtStart(const DescriptorsAtStart&) = delete;
  DescriptorsAtStart& operator=(const DescriptorsAtStart&) = delete;

  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  static void require(int error) {
    if (error != 0) fatalError("there is no memory for starting a program");
  }
  posix_spawn_file_actions_t actions_{};
};

/// A signal that this process ignores or blocks would be ignored or blocked by every program that
/// it starts.
class SignalsAtStart {
 public:
  SignalsAtStart() {
    ::posix_spawnattr_init(&attributes_);
    sigset_t signals;
    ::sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes_, &signals);
    ::sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes_, &signals);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  }
  ~SignalsAtStart() { ::posix_spawnattr_destroy(&attributes_); }
  SignalsAtStart(const SignalsAtStart&) = delete;
  SignalsAtStart& operator=(const SignalsAtStart&) = delete;

  [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

/// A process that could not be watched, and would never be reaped otherwise.
void endAtOnce(pid_t process) {
  ::kill(process, SIGKILL);
  while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

std::expected<SpawnedProcess, std::error_code> SpawnedProcess::start(
    const std::filesystem::path& program, std::span<const std::string> arguments, int socket,
    std::optional<int> output) {
  std::vector<std::string> texts{program.string()};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  pid_t process = 0;
  const DescriptorsAtStart descriptors(socket, output);
  const SignalsAtStart signals;
  const int error = ::posix_spawn(&process, program.c_str(), descriptors.get(), signals.get(),
                                  pointers.data(), environ);
  if (error != 0) return std::unexpected(systemError(error));
  FileDescriptor descriptor(::pidfd_open(process, 0));
  if (descriptor.isOpen()) return SpawnedProcess(std::move(descriptor));
  const std::error_code fault = systemError(errno);
  endAtOnce(process);
  return std::unexpected(fault);
}

void SpawnedProcess::kill() const {
  (void)::pidfd_send_signal(descriptor_.get(), SIGKILL, nullptr, 0);
}

ChildEnd SpawnedProcess::reap() const {
  siginfo_t information{};
  while (::waitid(P_PIDFD, static_cast<id_t>(descriptor_.get()), &information, WEXITED) != 0) {
    // Somebody who is to reap nothing but what it has started has reaped this one.
    if (errno != EINTR) return {};
  }
  if (information.si_code == CLD_EXITED) return {.exitStatus = information.si_status};
  return {.exitStatus = std::nullopt, .signal = information.si_status};
}

}  // namespace lanternfold
