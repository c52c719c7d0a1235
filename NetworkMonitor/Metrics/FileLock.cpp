#include "NetworkMonitor/Metrics/FileLock.h"

#include <chrono>
#include <optional>

#include "NetworkMonitor/Metrics/LockFileText.h"

namespace lanternfold {
namespace {

using Date = std::chrono::system_clock::time_point;
using Case = LockError::Case;

constexpr std::string_view queueLabel = "net.quernaple.NetworkMonitor.FileLock";
constexpr std::chrono::microseconds timeBetweenLooks{50'000};

std::unexpected<LockError> failure(Case value,
                                   std::optional<std::error_code> underlying = std::nullopt) {
  return std::unexpected(LockError{.value = value, .underlying = underlying});
}

/// What is left of `timeout` when the clock can name no later moment; zero for none and for what is
/// no number.
std::chrono::nanoseconds bounded(std::chrono::duration<double> timeout, Date now) {
  if (!(timeout > std::chrono::duration<double>::zero())) return {};
  const std::chrono::nanoseconds most = Date::max() - std::max(now, Date{});
  if (timeout >= most) return most;
  return std::chrono::duration_cast<std::chrono::nanoseconds>(timeout);
}

}  // namespace

template <typename Result>
Result FileLock::onQueue(std::move_only_function<Result()> work, Result whenShuttingDown) const {
  Result result = std::move(whenShuttingDown);
  static_cast<void>(
      environment_.dispatch.serialQueue(queueLabel, QualityOfService::userInitiated).sync([&] {
        result = work();
      }));
  return result;
}

bool FileLock::isLocked() const {
  return onQueue<bool>([this] { return isTaken(); }, false);
}

FileLock::Outcome FileLock::lock(std::chrono::duration<double> timeout) {
  const Date now = environment_.clock.now();
  const auto wait = bounded(timeout, now);
  const Date deadline = now + wait;
  if (deadline <= now) return failure(Case::lockTimeout);
  if (const auto isFree = waitUntilFree(deadline, wait); !isFree) return isFree;
  return onQueue<Outcome>([this, deadline] { return write(deadline); }, failure(Case::lockFailed));
}

FileLock::Outcome FileLock::unlock() {
  return onQueue<Outcome>([this] { return remove(); }, failure(Case::unlockFailed));
}

bool FileLock::isTaken() const {
  const auto contents = environment_.files.readFile(url_, longestLockFileTextBytes);
  if (!contents) return false;
  const auto expiry = decodeLockFileText(contents->bytes);
  return expiry && *expiry > secondsSince2001(environment_.clock.now());
}

FileLock::Outcome FileLock::waitUntilFree(Date deadline, std::chrono::nanoseconds timeout) const {
  const Clock& clock = environment_.clock;
  const auto begin = clock.steadyNow();
  while (isLocked()) {
    clock.sleep(timeBetweenLooks);
    // The wall clock may be set back meanwhile, which must not prolong the wait.
    if (clock.now() > deadline || clock.steadyNow() - begin > timeout) {
      return failure(Case::lockTimeout);
    }
  }
  return {};
}

FileLock::Outcome FileLock::write(Date deadline) {
  FileSystem& files = environment_.files;
  if (files.attributes(url_)) {
    const auto removed = files.removeFile(url_);
    // Another program that found the same lock lapsed may have removed it first.
    if (!removed && removed.error() != std::errc::no_such_file_or_directory) {
      return failure(Case::lockFailed, removed.error());
    }
  }
  if (!files.createEmptyFile(url_)) return failure(Case::lockFailed);
  const auto written = files.overwriteFile(url_, encodeLockFileText(deadline));
  if (!written) return failure(Case::lockFailed, written.error());
  return {};
}

FileLock::Outcome FileLock::remove() {
  const auto removed = environment_.files.removeFile(url_);
  if (removed) return {};
  if (removed.error() == std::errc::no_such_file_or_directory) {
    return failure(Case::alreadyUnlocked);
  }
  return failure(Case::unlockFailed, removed.error());
}

}  // namespace lanternfold
