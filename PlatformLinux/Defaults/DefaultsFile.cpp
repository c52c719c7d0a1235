#include "PlatformLinux/Defaults/DefaultsFile.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "PlatformLinux/System/FileAccess.h"
#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

constexpr mode_t privateMode = S_IRUSR | S_IWUSR;
constexpr int lockPauseMilliseconds = 20;
/// Kept beside a suite; they are the user's to remove.
constexpr int mostSetAside = 20;
/// By one program: a disk that damages whatever is written to it is not written to for ever.
constexpr int mostSetAsideByOne = 3;

DefaultsFault systemFault(int error) {
  return {.reason = std::generic_category().message(error),
          .advice = "make room, or check the permissions of the file and its folder"};
}

/// For as long as it lives; none when it is still another's at the deadline.
std::expected<FileDescriptor, DefaultsFault> lockFolder(const fs::path& path,
                                                        DefaultsFile::Deadline deadline) {
  const fs::path name = path.native() + ".lock";
  FileDescriptor file(uninterrupted(
      [&] { return ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, privateMode); }));
  if (!file.isOpen()) return std::unexpected(systemFault(errno));
  while (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) return std::unexpected(systemFault(errno));
    if (std::chrono::steady_clock::now() >= deadline) {
      return std::unexpected(
          DefaultsFault{.reason = "another program keeps \"" + name.string() + "\" locked",
                        .advice = "end that program"});
    }
    sqlite3_sleep(lockPauseMilliseconds);
  }
  return file;
}

/// Makes an empty file for SQLite, whose own would be readable by others; the files that SQLite
/// makes beside it have the same permissions.
std::expected<void, DefaultsFault> makePrivateFile(const fs::path& path) {
  struct stat status{};
  if (::stat(path.c_str(), &status) == 0) {
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) == 0) return {};
    // Only the owner can; whoever else was let in may go on with it.
    (void)::chmod(path.c_str(), status.st_mode & S_IRWXU);
    return {};
  }
  const FileDescriptor file(uninterrupted(
      [&] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, privateMode); }));
  if (!file.isOpen()) return std::unexpected(systemFault(errno));
  return {};
}

/// Why what stands at `path` cannot be a database, as far as can be told without opening it; none
/// also when nothing stands there. SQLite would take a file that is too short for an empty one.
std::optional<std::string> obviousDamage(const fs::path& path) {
  constexpr off_t smallestDatabase = 512;
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  if (!S_ISREG(status.st_mode)) return "it is not a file";
  if (status.st_size > 0 && status.st_size < smallestDatabase) return "it is too short";
  return std::nullopt;
}

/// A name that is free, for the database and what belongs to it.
std::optional<fs::path> freeNameBeside(const fs::path& path) {
  for (int number = 1; number <= mostSetAside; ++number) {
    fs::path name = path.native() + ".damaged-" + std::to_string(number);
    std::error_code error;
    if (!fs::exists(fs::symlink_status(name, error))) return name;
  }
  return std::nullopt;
}

}  // namespace

std::expected<DefaultsDatabase*, DefaultsFault> DefaultsFile::database(bool retry,
                                                                       Deadline deadline) {
  if (open_ && !open_->hasMoved()) {
    open_->waitUntil(deadline);
    return &*open_;
  }
  if (failure_ && !retry) return std::unexpected(*failure_);
  open_.reset();
  auto opened = openAnew(deadline);
  if (!opened) {
    const bool isNews = failure_ != opened.error();
    failure_ = opened.error();
    if (isNews && failure_->kind == DefaultsFault::Kind::laterVersion) {
      log_.line("the settings in " + description() + " are left alone, and what is set is " +
                "forgotten at the end: " + failure_->reason + "; " + failure_->advice);
    }
    return std::unexpected(*failure_);
  }
  failure_.reset();
  return &open_.emplace(std::move(*opened));
}

void DefaultsFile::setAside(const std::string& reason, Deadline deadline) {
  if (!open_) return;
  const auto lock = lockFolder(path_, deadline);
  const bool isOurs = lock && !open_->hasMoved();
  if (isOurs) open_->leaveAsItIs();
  open_.reset();
  if (!lock) {
    failure_ = lock.error();
  } else if (isOurs) {
    if (const auto moved = moveAside(path_, reason); !moved) failure_ = moved.error();
  }
}

std::string DefaultsFile::description() const {
  return path_.empty() ? "the suite \"" + suite_ + '"' : '"' + path_.string() + '"';
}

std::expected<DefaultsDatabase, DefaultsFault> DefaultsFile::openAnew(Deadline deadline) {
  const auto folder = directory_.defaultsFolder();
  if (!folder) return std::unexpected(DefaultsFault{.reason = folder.error(), .advice = {}});
  // SQLite follows a link too, and keeps its other files beside the one that is linked to.
  std::error_code error;
  path_ = fs::weakly_canonical(*folder / (suite_ + ".sqlite"), error);
  if (error) {
    path_ = *folder / (suite_ + ".sqlite");
    return std::unexpected(systemFault(error.value()));
  }
  const auto lock = lockFolder(path_, deadline);
  if (!lock) return std::unexpected(lock.error());
  return openLocked(path_, deadline);
}

std::expected<DefaultsDatabase, DefaultsFault> DefaultsFile::openLocked(const Path& path,
                                                                        Deadline deadline) {
  // Ends at the latest when no more may be set aside.
  while (true) {
    auto reason = obviousDamage(path);
    if (!reason) {
      if (const auto made = makePrivateFile(path); !made) return std::unexpected(made.error());
      auto opened = DefaultsDatabase::open(path, deadline);
      if (opened || opened.error().kind != DefaultsFault::Kind::damaged) return opened;
      reason = opened.error().reason;
    }
    if (const auto moved = moveAside(path, *reason); !moved) return std::unexpected(moved.error());
  }
}

std::expected<void, DefaultsFault> DefaultsFile::moveAside(const Path& path,
                                                           const std::string& reason) {
  const auto name = freeNameBeside(path);
  if (!name || setAsideCount_ == mostSetAsideByOne) {
    return std::unexpected(
        DefaultsFault{.reason = "it was damaged again and again (" + reason + ")",
                      .advice = "check the disk, and remove what was set aside beside it"});
  }
  if (::rename(path.c_str(), name->c_str()) != 0) return std::unexpected(systemFault(errno));
  ++setAsideCount_;
  for (const char* const ending : {"-wal", "-shm"}) {
    ::rename((path.native() + ending).c_str(), (name->native() + ending).c_str());
  }
  log_.line("the settings in \"" + path.string() + "\" were damaged (" + reason +
            "); they were set aside as \"" + name->filename().string() + "\" and begin anew");
  return {};
}

}  // namespace lanternfold
