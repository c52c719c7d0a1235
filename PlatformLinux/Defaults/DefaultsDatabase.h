// One suite's database while it is open: its schema, and rows in and out.
//
// Made by: `DefaultsFile`. Read by: `SqliteUserDefaults`, through it.
#pragma once

#include <expected>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "PlatformLinux/Defaults/SqliteConnection.h"
#include "PlatformLinux/Defaults/StoredValue.h"

namespace lanternfold {

struct DefaultsFault {
  enum class Kind {
    unavailable,   ///< the disk, another program or the permissions are in the way
    damaged,       ///< it is no database, not one of ours, or one that contradicts itself
    laterVersion,  ///< a later version of the program keeps it in a form of its own
  };

  Kind kind = Kind::unavailable;
  std::string reason;
  std::string advice;  ///< what a user can do; a clause
  friend bool operator==(const DefaultsFault&, const DefaultsFault&) = default;
};

/// What was set, or none where something was removed, by key.
using DefaultsChanges = std::map<std::string, std::optional<PropertyListValue>, std::less<>>;

/// One thread at a time; any number of processes.
class DefaultsDatabase {
 public:
  using Deadline = SqliteConnection::Deadline;

  enum class Durability {
    whenConvenient,  ///< survives the end of the program; a loss of power may take the last changes
    onDisk,          ///< everything written so far survives a loss of power
  };

  /// Opens a file that exists; an empty one becomes a database. One process at a time. Here and
  /// later, others are waited for until `deadline`.
  [[nodiscard]] static std::expected<DefaultsDatabase, DefaultsFault> open(
      const std::filesystem::path& path, Deadline deadline);

  /// Puts another deadline in the place of the one before.
  void waitUntil(Deadline deadline) { connection_.waitUntil(deadline); }

  /// The row of a key; none when there is none, or one of a type that is never stored.
  [[nodiscard]] std::expected<std::optional<StoredValue>, DefaultsFault> read(std::string_view key);

  /// All of the changes or, when it fails, none.
  [[nodiscard]] std::expected<void, DefaultsFault> write(const DefaultsChanges& changes,
                                                         Durability durability);

  /// Whether another file, or none, stands in its place by now.
  [[nodiscard]] bool hasMoved() const { return connection_.hasMoved(); }
  /// For a damaged one: nothing more is done to its files.
  void leaveAsItIs() { connection_.keepLogAtEnd(); }

 private:
  struct Statements {
    SqliteStatement select;
    SqliteStatement insert;
    SqliteStatement remove;
  };

  DefaultsDatabase(SqliteConnection connection, Statements statements)
      : connection_(std::move(connection)), statements_(std::move(statements)) {}

  [[nodiscard]] SqliteResult<void> writeInTransaction(const DefaultsChanges& changes,
                                                      Durability durability);
  [[nodiscard]] SqliteResult<void> apply(const DefaultsChanges& changes);

  SqliteConnection connection_;
  Statements statements_;  // before the connection is closed
};

}  // namespace lanternfold
