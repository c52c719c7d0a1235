// The file of one suite: found, made, opened, and set aside when it is damaged.
//
// Made by: `SqliteUserDefaults`. Read by: the same.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

#include "Platform/DiagnosticLog.h"
#include "PlatformLinux/Defaults/DataDirectory.h"
#include "PlatformLinux/Defaults/DefaultsDatabase.h"

namespace lanternfold {

/// One thread at a time; any number of processes. Opening and setting aside are done by one process
/// at a time: a lock on the file NAME.lock says whose turn it is, and the kernel releases that of a
/// process that ends.
class DefaultsFile {
 public:
  using Deadline = DefaultsDatabase::Deadline;

  /// `suite` is a file name. Both references outlive the object.
  DefaultsFile(const DataDirectory& directory, std::string suite, DiagnosticLog& log)
      : directory_(directory), suite_(std::move(suite)), log_(log) {}

  /// The database that stands in the suite's place; opened anew when another one stands there by
  /// now, and after an earlier failure only when `retry` is set. A damaged one is set aside first.
  /// Here, and by the database that is returned, others are waited for until `deadline`.
  [[nodiscard]] std::expected<DefaultsDatabase*, DefaultsFault> database(bool retry,
                                                                         Deadline deadline);

  /// After an operation found the open database damaged: sets it aside, unless another process has
  /// done so. What `database` returned is gone.
  void setAside(const std::string& reason, Deadline deadline);

  /// Where the suite is kept, as far as it is known.
  [[nodiscard]] std::string description() const;

 private:
  using Path = std::filesystem::path;
  template <typename Value>
  using Result = std::expected<Value, DefaultsFault>;

  [[nodiscard]] Result<DefaultsDatabase> openAnew(Deadline deadline);
  [[nodiscard]] Result<DefaultsDatabase> openLocked(const Path& path, Deadline deadline);
  /// Under the lock: moves what stands at `path` out of the way.
  [[nodiscard]] Result<void> moveAside(const Path& path, const std::string& reason);

  const DataDirectory& directory_;
  const std::string suite_;
  DiagnosticLog& log_;
  Path path_;  ///< empty until the folder is known
  std::optional<DefaultsDatabase> open_;
  std::optional<DefaultsFault> failure_;  ///< why the last try to open failed
  int setAsideCount_ = 0;
};

}  // namespace lanternfold
