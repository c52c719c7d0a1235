#include "Wiring/ProcessHostStarter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "PlatformLinux/System/FileAccess.h"
#include "PlatformLinux/System/FileDescriptor.h"
#include "PlatformLinux/System/ProcessEnd.h"
#include "Wiring/PrintableText.h"
#include "Wiring/ProgramName.h"
#include "Wiring/StartNotice.h"

namespace lanternfold {
namespace {

/// Ends with the null that the system wants.
std::vector<char*> pointersTo(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// What the new process has open, and to which session it belongs.
class Surroundings {
 public:
  Surroundings(int started, int startedInChild) {
    (void)::posix_spawn_file_actions_init(&files_);
    (void)::posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    // Also opens it for the new program alone.
    (void)::posix_spawn_file_actions_adddup2(&files_, started, startedInChild);
    (void)::posix_spawnattr_init(&attributes_);
    (void)::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID);
  }
  ~Surroundings() {
    (void)::posix_spawnattr_destroy(&attributes_);
    (void)::posix_spawn_file_actions_destroy(&files_);
  }
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;

  [[nodiscard]] const posix_spawn_file_actions_t* files() const { return &files_; }
  [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
};

/// For what a host has to finish before it ends.
constexpr std::chrono::seconds farewell{5};

enum class Beginning { started, ended, silent };

using Clock = std::chrono::steady_clock;

/// A signal that comes meanwhile does not make it longer.
std::chrono::milliseconds timeUntil(Clock::time_point deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
  return std::max(left, std::chrono::milliseconds(0));
}

/// Until the byte comes, or the end of whoever would send it.
Beginning waitForNotice(int notice, Clock::time_point deadline) {
  pollfd waiting{.fd = notice, .events = POLLIN, .revents = 0};
  const int ready = uninterrupted(
      [&] { return ::poll(&waiting, 1, static_cast<int>(timeUntil(deadline).count())); });
  if (ready <= 0) return Beginning::silent;
  char byte = 0;
  const ssize_t count = uninterrupted([&] { return ::read(notice, &byte, 1); });
  return count == 1 ? Beginning::started : Beginning::ended;
}

int statusAfterEndOf(pid_t process) {
  int status = 0;
  (void)uninterrupted([&] { return ::waitpid(process, &status, 0); });
  return status;
}

/// Nothing of it is left behind, also when it hangs.
void putAnEndTo(pid_t process) {
  (void)::kill(process, SIGTERM);
  if (!waitForEnd(process, farewell)) (void)::kill(process, SIGKILL);
  // One that a device holds up ends whenever the device lets it.
  if (waitForEnd(process, farewell)) (void)statusAfterEndOf(process);
}

/// A host that finds another one hands over to it, and is done.
std::expected<void, CommandFailure> outcomeOf(int status) {
  if (WIFSIGNALED(status)) {
    return std::unexpected(
        workFailed("the program that shows the widgets was ended by the signal " +
                   std::to_string(WTERMSIG(status)) +
                   " before it had shown any; try again without "
                   "--detach to see what it says"));
  }
  if (WEXITSTATUS(status) == 0) return {};
  const bool misunderstood = WEXITSTATUS(status) == static_cast<int>(ExitStatus::badArguments);
  return std::unexpected(CommandFailure{
      .status = misunderstood ? ExitStatus::badArguments : ExitStatus::failed, .sentence = {}});
}

}  // namespace

ProcessHostStarter::ProcessHostStarter(const std::filesystem::path& folder,
                                       std::chrono::milliseconds limit)
    : program_(folder / hostProgramName), limit_(limit) {}

CommandFailure ProcessHostStarter::become(const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {program_};
  words.insert(words.end(), arguments.begin(), arguments.end());
  (void)::execv(program_.c_str(), pointersTo(words).data());
  return cannotStart(errno);
}

std::expected<void, CommandFailure> ProcessHostStarter::startDetached(
    const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::unexpected(cannotStart(errno));
  const FileDescriptor notice(ends[0]);
  std::optional<FileDescriptor> started(ends[1]);
  // A number that neither end has: a descriptor that is its own copy would stay closed.
  const int startedInChild = std::max(ends[0], ends[1]) + 1;
  std::vector<std::string> words = {program_, startNoticeOption, std::to_string(startedInChild)};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const Surroundings surroundings(ends[1], startedInChild);
  pid_t process = 0;
  const int error = ::posix_spawn(&process, program_.c_str(), surroundings.files(),
                                  surroundings.attributes(), pointersTo(words).data(), environ);
  started.reset();
  if (error != 0) return std::unexpected(cannotStart(error));
  const Clock::time_point deadline = Clock::now() + limit_;
  switch (waitForNotice(notice.get(), deadline)) {
    case Beginning::started:
      return {};
    case Beginning::ended:
      // Its end of the pipe is gone before the process is.
      if (waitForEnd(process, timeUntil(deadline))) return outcomeOf(statusAfterEndOf(process));
      break;
    case Beginning::silent:
      break;
  }
  putAnEndTo(process);
  return std::unexpected(workFailed(
      "the program that shows the widgets has shown none for a minute; try again without "
      "--detach to see what it says"));
}

CommandFailure ProcessHostStarter::cannotStart(int error) const {
  if (error == ENOENT) {
    return workFailed(
        "there is no " + inQuotes(program_.string()) +
        "; install the program that shows widgets on the desktop, which belongs beside "
        "this one");
  }
  return workFailed("cannot start " + inQuotes(program_.string()) + ": " +
                    std::generic_category().message(error) +
                    "; check that the file may be executed and that the limits on processes and "
                    "memory leave room for it");
}

}  // namespace lanternfold
