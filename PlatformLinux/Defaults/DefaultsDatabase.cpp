#include "PlatformLinux/Defaults/DefaultsDatabase.h"

#include <sqlite3.h>

namespace lanternfold {
namespace {

constexpr std::int64_t applicationId = 0x4C664458;  // "LfDX"
constexpr std::int64_t schemaVersion = 1;
/// Compared with the text that a database keeps of its own table: a change is a new version.
constexpr const char* schema =
    "CREATE TABLE setting (key TEXT PRIMARY KEY NOT NULL, kind TEXT NOT NULL, value NOT NULL)";
constexpr const char* makeSchema =
    "BEGIN IMMEDIATE;"
    "PRAGMA application_id = 0x4C664458;"
    "PRAGMA user_version = 1;"
    "CREATE TABLE setting (key TEXT PRIMARY KEY NOT NULL, kind TEXT NOT NULL, value NOT NULL);"
    "COMMIT";

DefaultsFault faultOf(const SqliteFault& fault) {
  using Kind = DefaultsFault::Kind;
  switch (fault.code & 0xFF) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      return {.kind = Kind::damaged, .reason = fault.reason, .advice = {}};
    case SQLITE_FULL:
      return {.reason = fault.reason, .advice = "make room on the disk"};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return {.reason = fault.reason, .advice = "end the other program that keeps it locked"};
    case SQLITE_TOOBIG:
      return {.reason = fault.reason, .advice = "remember less in one setting"};
    default:
      return {.reason = fault.reason,
              .advice = "check the disk and the permissions of the file and its folder"};
  }
}

DefaultsFault damage(std::string reason) {
  return {.kind = DefaultsFault::Kind::damaged, .reason = std::move(reason), .advice = {}};
}

std::unexpected<DefaultsFault> failure(const SqliteFault& fault) {
  return std::unexpected(faultOf(fault));
}

struct Header {
  std::int64_t application = 0;
  std::int64_t version = 0;
  std::int64_t objects = 0;
};

SqliteResult<Header> headerOf(SqliteConnection& connection) {
  Header header;
  for (const auto& [text, value] :
       {std::pair("PRAGMA application_id", &header.application),
        std::pair("PRAGMA user_version", &header.version),
        std::pair("SELECT count(*) FROM sqlite_schema WHERE name NOT LIKE 'sqlite_%'",
                  &header.objects)}) {
    const auto read = connection.integerOf(text);
    if (!read) return std::unexpected(read.error());
    *value = *read;
  }
  return header;
}

std::expected<void, DefaultsFault> checkHeader(const Header& header) {
  if (header.application != applicationId) {
    return std::unexpected(damage("it is the database of another program"));
  }
  if (header.version > schemaVersion) {
    return std::unexpected(
        DefaultsFault{.kind = DefaultsFault::Kind::laterVersion,
                      .reason = "a later version of the program has written it",
                      .advice = "use that version, or choose another folder with --data-dir"});
  }
  if (header.version != schemaVersion || header.objects != 1) {
    return std::unexpected(damage("its tables are not those of this program"));
  }
  return {};
}

std::expected<void, DefaultsFault> checkSchema(SqliteConnection& connection) {
  auto statement = connection.prepare("SELECT sql FROM sqlite_schema WHERE name = 'setting'");
  if (!statement) return failure(statement.error());
  const auto row = statement->step();
  if (!row) return failure(row.error());
  if (!*row || statement->text(0) != schema) {
    return std::unexpected(damage("its tables are not those of this program"));
  }
  return {};
}

/// Makes the table in a database that is empty, else sees that it is ours.
std::expected<void, DefaultsFault> prepareSchema(SqliteConnection& connection) {
  const auto header = headerOf(connection);
  if (!header) return failure(header.error());
  if (header->application == 0 && header->version == 0 && header->objects == 0) {
    // Where a log beside the file is not possible, the database works without one.
    if (const auto log = connection.execute("PRAGMA journal_mode = WAL"); !log) {
      return failure(log.error());
    }
    if (const auto made = connection.execute(makeSchema); !made) return failure(made.error());
    return {};
  }
  if (auto checked = checkHeader(*header); !checked) return checked;
  return checkSchema(connection);
}

}  // namespace

std::expected<DefaultsDatabase, DefaultsFault> DefaultsDatabase::open(
    const std::filesystem::path& path, Deadline deadline) {
  auto connection = SqliteConnection::open(path);
  if (!connection) return failure(connection.error());
  connection->waitUntil(deadline);
  if (auto prepared = prepareSchema(*connection); !prepared) {
    connection->keepLogAtEnd();
    return std::unexpected(prepared.error());
  }
  // A dozen pages are read again and again; SQLite would keep two megabytes of them.
  const auto settings =
      connection->execute("PRAGMA synchronous = NORMAL; PRAGMA cache_size = -256");
  if (!settings) return failure(settings.error());
  auto select = connection->prepare("SELECT kind, value FROM setting WHERE key = ?1");
  if (!select) return failure(select.error());
  auto insert =
      connection->prepare("INSERT OR REPLACE INTO setting (key, kind, value) VALUES (?1, ?2, ?3)");
  if (!insert) return failure(insert.error());
  auto remove = connection->prepare("DELETE FROM setting WHERE key = ?1");
  if (!remove) return failure(remove.error());
  return DefaultsDatabase(
      std::move(*connection),
      {.select = std::move(*select), .insert = std::move(*insert), .remove = std::move(*remove)});
}

std::expected<std::optional<StoredValue>, DefaultsFault> DefaultsDatabase::read(
    std::string_view key) {
  SqliteStatement& select = statements_.select;
  select.bindText(1, key);
  const auto row = select.step();
  std::optional<StoredValue> stored;
  if (row && *row) {
    if (auto value = select.value(1)) {
      stored = StoredValue{.kind = select.text(0), .value = std::move(*value)};
    }
  }
  select.reset();
  if (!row) return failure(row.error());
  return stored;
}

std::expected<void, DefaultsFault> DefaultsDatabase::write(const DefaultsChanges& changes,
                                                           Durability durability) {
  const auto written = writeInTransaction(changes, durability);
  if (written) return {};
  if (connection_.isInTransaction()) (void)connection_.execute("ROLLBACK");
  return failure(written.error());
}

SqliteResult<void> DefaultsDatabase::writeInTransaction(const DefaultsChanges& changes,
                                                        Durability durability) {
  const bool onDisk = durability == Durability::onDisk;
  // With FULL, a commit waits until the whole log is on the disk, earlier commits included.
  if (auto set =
          connection_.execute(onDisk ? "PRAGMA synchronous = FULL" : "PRAGMA synchronous = NORMAL");
      !set) {
    return set;
  }
  if (auto begun = connection_.execute("BEGIN IMMEDIATE"); !begun) return begun;
  if (auto applied = apply(changes); !applied) return applied;
  // A commit that changes nothing writes nothing, and would wait for nothing.
  if (onDisk) {
    if (auto touched = connection_.execute("PRAGMA user_version = 1"); !touched) return touched;
  }
  return connection_.execute("COMMIT");
}

SqliteResult<void> DefaultsDatabase::apply(const DefaultsChanges& changes) {
  for (const auto& [key, value] : changes) {
    SqliteStatement& statement = value ? statements_.insert : statements_.remove;
    statement.bindText(1, key);
    if (value) {
      const StoredValue stored = storedValueOf(*value);
      statement.bindText(2, stored.kind);
      statement.bindValue(3, stored.value);
    }
    const auto stepped = statement.step();
    statement.reset();
    if (!stepped) return std::unexpected(stepped.error());
  }
  return {};
}

}  // namespace lanternfold
