#include "PlatformLinux/Defaults/SqliteConnection.h"

#include <algorithm>
#include <sqlite3.h>
#include <type_traits>

namespace lanternfold {
namespace {

constexpr int longestValueBytes = 64 * 1024 * 1024;

/// Called while another one has a lock, with how often it was before: whether to try again. Not
/// SQLite's own timeout, which begins anew with each lock.
int pauseUntilDeadline(void* context, int pauses) {
  using std::chrono::milliseconds;
  constexpr int longestPauseMilliseconds = 20;
  const auto& deadline = *static_cast<const SqliteConnection::Deadline*>(context);
  const auto left =
      std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now()).count();
  if (left <= 0) return 0;
  const int pause = std::min(pauses + 1, longestPauseMilliseconds);
  sqlite3_sleep(static_cast<int>(std::min<milliseconds::rep>(left, pause)));
  return 1;
}

}  // namespace

void SqliteStatement::Finalizer::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

void SqliteStatement::reset() {
  sqlite3_reset(statement_.get());
  sqlite3_clear_bindings(statement_.get());
  bindFault_ = SQLITE_OK;
}

void SqliteStatement::bindText(int position, std::string_view text) {
  const int result = sqlite3_bind_text64(statement_.get(), position, text.data(), text.size(),
                                         SQLITE_TRANSIENT, SQLITE_UTF8);
  if (result != SQLITE_OK) bindFault_ = result;
}

void SqliteStatement::bindValue(int position, const StoredValue::Value& value) {
  sqlite3_stmt* const statement = statement_.get();
  if (const auto* text = std::get_if<std::string>(&value)) return bindText(position, *text);
  int result = SQLITE_OK;
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    result = sqlite3_bind_int64(statement, position, *number);
  } else {
    const auto& data = std::get<PropertyListValue::Data>(value);
    // A null pointer would bind NULL.
    result = data.empty() ? sqlite3_bind_zeroblob(statement, position, 0)
                          : sqlite3_bind_blob64(statement, position, data.data(), data.size(),
                                                SQLITE_TRANSIENT);
  }
  if (result != SQLITE_OK) bindFault_ = result;
}

SqliteResult<bool> SqliteStatement::step() {
  if (bindFault_ != SQLITE_OK) {
    return std::unexpected(SqliteFault{.code = bindFault_, .reason = sqlite3_errstr(bindFault_)});
  }
  const int result = sqlite3_step(statement_.get());
  if (result == SQLITE_ROW) return true;
  if (result == SQLITE_DONE) return false;
  return std::unexpected(
      SqliteFault{.code = result, .reason = sqlite3_errmsg(sqlite3_db_handle(statement_.get()))});
}

std::int64_t SqliteStatement::integer(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

std::string SqliteStatement::text(int column) const {
  const auto* const text =
      reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

std::optional<StoredValue::Value> SqliteStatement::value(int column) const {
  switch (sqlite3_column_type(statement_.get(), column)) {
    case SQLITE_INTEGER:
      return integer(column);
    case SQLITE_TEXT:
      return text(column);
    case SQLITE_BLOB:
      return blob(column);
    default:
      return std::nullopt;
  }
}

PropertyListValue::Data SqliteStatement::blob(int column) const {
  const auto* const bytes =
      static_cast<const std::byte*>(sqlite3_column_blob(statement_.get(), column));
  if (bytes == nullptr) return {};
  return {bytes, bytes + sqlite3_column_bytes(statement_.get(), column)};
}

void SqliteConnection::Closer::operator()(sqlite3* database) const { sqlite3_close_v2(database); }

SqliteResult<SqliteConnection> SqliteConnection::open(const std::filesystem::path& path) {
  sqlite3* database = nullptr;
  constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE |
                        SQLITE_OPEN_PRIVATECACHE;
  const int result = sqlite3_open_v2(path.c_str(), &database, flags, nullptr);
  SqliteConnection connection(database);
  if (database == nullptr) {
    return std::unexpected(SqliteFault{.code = result, .reason = sqlite3_errstr(result)});
  }
  if (result != SQLITE_OK) return connection.fault();
  sqlite3_busy_handler(database, pauseUntilDeadline, connection.deadline_.get());
  sqlite3_limit(database, SQLITE_LIMIT_LENGTH, longestValueBytes);
  // The file may be anybody's: nothing in its schema is run.
  sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  return connection;
}

SqliteResult<SqliteStatement> SqliteConnection::prepare(const char* text) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v3(database_.get(), text, -1, SQLITE_PREPARE_PERSISTENT, &statement,
                         nullptr) != SQLITE_OK) {
    return fault();
  }
  return SqliteStatement(statement);
}

SqliteResult<void> SqliteConnection::execute(const char* text) {
  if (sqlite3_exec(database_.get(), text, nullptr, nullptr, nullptr) != SQLITE_OK) return fault();
  return {};
}

SqliteResult<std::int64_t> SqliteConnection::integerOf(const char* text) {
  auto statement = prepare(text);
  if (!statement) return std::unexpected(statement.error());
  const auto row = statement->step();
  if (!row) return std::unexpected(row.error());
  return *row ? statement->integer(0) : 0;
}

bool SqliteConnection::isInTransaction() const {
  return sqlite3_get_autocommit(database_.get()) == 0;
}

bool SqliteConnection::hasMoved() const {
  int moved = 0;
  sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved != 0;
}

void SqliteConnection::keepLogAtEnd() {
  sqlite3_db_config(database_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

std::unexpected<SqliteFault> SqliteConnection::fault() const {
  return std::unexpected(SqliteFault{.code = sqlite3_extended_errcode(database_.get()),
                                     .reason = sqlite3_errmsg(database_.get())});
}

}  // namespace lanternfold
