// Exclusion between programs, and how it fails.
//
// Made by: the file storage. Read by: whoever locks a storage.
#pragma once

#include <chrono>
#include <expected>
#include <optional>
#include <string>
#include <system_error>

namespace lanternfold {

struct LockError {
  enum class Case {
    lockFailed,       ///< the lock file could not be removed, created, opened or written
    unlockFailed,     ///< the lock file could not be removed
    lockTimeout,      ///< the lock stayed taken until the deadline
    alreadyUnlocked,  ///< there was no lock file to remove
  };

  Case value = Case::lockFailed;
  /// Of the system; absent where it gave none, and always with the last two cases.
  std::optional<std::error_code> underlying;

  friend bool operator==(const LockError&, const LockError&) = default;
};

/// A clause for a message, with what to do where a user can do something.
[[nodiscard]] std::string describe(const LockError& error);

/// Any thread but that of the lock's own queue; blocks for the disk, and `lock` until its time-out.
class Lock {
 public:
  static constexpr std::chrono::duration<double> defaultTimeout{0.5};

  virtual ~Lock() = default;

  [[nodiscard]] virtual bool isLocked() const = 0;
  [[nodiscard]] virtual std::expected<void, LockError> lock(
      std::chrono::duration<double> timeout) = 0;
  [[nodiscard]] virtual std::expected<void, LockError> unlock() = 0;

  /// With the default time-out.
  [[nodiscard]] std::expected<void, LockError> lock() { return lock(defaultTimeout); }
};

}  // namespace lanternfold
