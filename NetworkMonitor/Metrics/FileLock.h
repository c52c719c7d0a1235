// A lock between programs: a file whose text says when the lock lapses, so that a program that
// ended while it held the lock blocks the others for a moment only (longer when the wall clock,
// which the text is told by, is set back meanwhile).
//
// Made by: the file storage. Read by: whoever locks it. The lease is as long as the time-out of the
// wait, counted from the call: who waited for 0.4 of 0.5 s holds the lock for 0.1 s.
#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <type_traits>
#include <utility>
#include <variant>

#include "NetworkMonitor/Metrics/Lock.h"
#include "Platform/Clock.h"
#include "Platform/Dispatch.h"
#include "Platform/FileSystem.h"

namespace lanternfold {

/// A value: copies are the same lock. Looks at and changes its file on the program's one queue of
/// file locks, and waits on the caller's thread. Looking for a free lock and taking it are two
/// steps: of two programs that find one free at the same moment, both get it.
class FileLock final : public Lock {
 public:
  /// All outlive the lock.
  struct Environment {
    FileSystem& files;
    const Clock& clock;
    Dispatch& dispatch;
  };

  /// What to do when the lock stays taken: report it, or leave the action out and say nothing.
  enum class OnTimeout { fail, skip };

  /// Why an action under the lock failed: the lock, or what the action itself returned.
  template <typename ActionError>
  using PerformError = std::variant<LockError, ActionError>;

  FileLock(Environment environment, std::filesystem::path url)
      : environment_(environment), url_(std::move(url)) {}

  [[nodiscard]] const std::filesystem::path& url() const { return url_; }

  /// False too when the file cannot be read or holds anything but a decimal number.
  [[nodiscard]] bool isLocked() const override;

  using Lock::lock;
  /// lockTimeout at once when `timeout` is not positive, without a look at the file.
  [[nodiscard]] std::expected<void, LockError> lock(std::chrono::duration<double> timeout) override;

  /// Removes the file, whoever made it and whether or not it has lapsed.
  [[nodiscard]] std::expected<void, LockError> unlock() override;

  /// Runs `action`, which returns a `std::expected<void, ActionError>`, under the lock, and gives
  /// the lock up in any case; that this fails is not reported.
  template <typename Action,
            typename ActionError = typename std::invoke_result_t<Action>::error_type>
  [[nodiscard]] std::expected<void, PerformError<ActionError>> perform(
      OnTimeout onTimeout, std::chrono::duration<double> timeout, Action&& action) {
    using Failure = PerformError<ActionError>;
    if (const auto locked = lock(timeout); !locked) {
      const bool isTimeout = locked.error().value == LockError::Case::lockTimeout;
      if (isTimeout && onTimeout == OnTimeout::skip) return {};
      return std::unexpected(Failure(std::in_place_index<0>, locked.error()));
    }
    const Unlocking unlocking(*this);
    if (auto done = std::forward<Action>(action)(); !done) {
      return std::unexpected(Failure(std::in_place_index<1>, std::move(done).error()));
    }
    return {};
  }

 private:
  using Date = std::chrono::system_clock::time_point;
  using Outcome = std::expected<void, LockError>;

  struct Unlocking {
    explicit Unlocking(FileLock& lock) : held(lock) {}
    Unlocking(const Unlocking&) = delete;
    Unlocking& operator=(const Unlocking&) = delete;
    ~Unlocking() { [[maybe_unused]] const auto unlocked = held.unlock(); }
    FileLock& held;
  };

  /// Runs `work` on the queue of file locks and returns what it returns; `whenShuttingDown` when
  /// the queues are being destroyed and it was not run.
  template <typename Result>
  Result onQueue(std::move_only_function<Result()> work, Result whenShuttingDown) const;

  // On the queue:
  [[nodiscard]] bool isTaken() const;
  [[nodiscard]] Outcome write(Date deadline);
  [[nodiscard]] Outcome remove();

  // On the caller's thread:
  [[nodiscard]] Outcome waitUntilFree(Date deadline, std::chrono::nanoseconds timeout) const;

  Environment environment_;
  std::filesystem::path url_;
};

}  // namespace lanternfold
