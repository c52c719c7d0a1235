// SQLite's handles, owned, and its results as values.
//
// Read by: `DefaultsDatabase`.
#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "PlatformLinux/Defaults/StoredValue.h"

struct sqlite3;
struct sqlite3_stmt;

namespace lanternfold {

struct SqliteFault {
  int code = 0;        ///< an extended result code
  std::string reason;  ///< SQLite's own words
  friend bool operator==(const SqliteFault&, const SqliteFault&) = default;
};

template <typename Value>
using SqliteResult = std::expected<Value, SqliteFault>;

/// A prepared statement, used again and again by one thread at a time.
class SqliteStatement {
 public:
  explicit SqliteStatement(sqlite3_stmt* statement) : statement_(statement) {}

  /// Forgets what was bound and where the statement stands. Texts are copied.
  void reset();
  void bindText(int position, std::string_view text);
  void bindValue(int position, const StoredValue::Value& value);

  /// The next row: whether there is one.
  [[nodiscard]] SqliteResult<bool> step();

  /// Of the row that `step` stands on; positions begin with 0.
  [[nodiscard]] std::int64_t integer(int column) const;
  [[nodiscard]] std::string text(int column) const;
  /// None for a type that is never stored.
  [[nodiscard]] std::optional<StoredValue::Value> value(int column) const;

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const;
  };

  [[nodiscard]] PropertyListValue::Data blob(int column) const;

  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
  int bindFault_ = 0;  ///< the first result of binding that was no success
};

/// One thread at a time.
class SqliteConnection {
 public:
  using Deadline = std::chrono::steady_clock::time_point;

  /// Opens a file that exists. Locks of others are not waited for until `waitUntil` says so.
  [[nodiscard]] static SqliteResult<SqliteConnection> open(const std::filesystem::path& path);

  /// From now on locks of others are waited for until `deadline`, and no longer than that.
  void waitUntil(Deadline deadline) { *deadline_ = deadline; }

  /// `text` is the program's own, never made of what comes from outside.
  [[nodiscard]] SqliteResult<SqliteStatement> prepare(const char* text);
  [[nodiscard]] SqliteResult<void> execute(const char* text);
  /// The first column of the first row; 0 when there is none.
  [[nodiscard]] SqliteResult<std::int64_t> integerOf(const char* text);

  [[nodiscard]] bool isInTransaction() const;
  /// Whether the file no longer stands where it was opened.
  [[nodiscard]] bool hasMoved() const;
  /// From now on the end of the last connection leaves the log beside the file, instead of bringing
  /// it into the file and removing it.
  void keepLogAtEnd();

 private:
  struct Closer {
    void operator()(sqlite3* database) const;
  };

  explicit SqliteConnection(sqlite3* database) : database_(database) {}
  [[nodiscard]] std::unexpected<SqliteFault> fault() const;

  std::unique_ptr<Deadline> deadline_ = std::make_unique<Deadline>();  // SQLite keeps its address
  std::unique_ptr<sqlite3, Closer> database_;
};

}  // namespace lanternfold
