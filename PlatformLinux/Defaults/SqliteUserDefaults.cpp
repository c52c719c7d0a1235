#include "PlatformLinux/Defaults/SqliteUserDefaults.h"

#include <chrono>

#include "Platform/GroupContainer.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// A database that is found damaged is replaced, and the one in its place is tried once.
constexpr int mostTries = 3;
constexpr const char* standardSuite = "standard";
constexpr const char* toTheDisk = "brought to the disk";

/// For all that a call waits for: the file that is locked, the database, and every further try.
DefaultsDatabase::Deadline deadlineOfACall() {
  return std::chrono::steady_clock::now() + std::chrono::seconds(1);
}

}  // namespace

std::expected<void, UserDefaultsError> SqliteUserDefaults::open() {
  const std::lock_guard lock(mutex_);
  if (const auto database = file_.database(/*retry=*/true, deadlineOfACall()); !database) {
    return std::unexpected(errorOf(database.error(), toTheDisk));
  }
  return {};
}

UserDefaults::Look SqliteUserDefaults::object(std::string_view key) const {
  const std::lock_guard lock(mutex_);
  if (const auto kept = pending_.find(key); kept != pending_.end()) return kept->second;
  const Deadline deadline = deadlineOfACall();
  DefaultsFault fault;
  for (int tried = 0; tried < mostTries; ++tried) {
    const auto database = file_.database(/*retry=*/false, deadline);
    if (!database) return std::unexpected(errorOf(database.error(), "read"));
    const auto stored = (*database)->read(key);
    if (stored) return *stored ? propertyListValueOf(**stored) : std::nullopt;
    fault = stored.error();
    if (fault.kind != DefaultsFault::Kind::damaged) break;
    file_.setAside(fault.reason, deadline);
  }
  return std::unexpected(errorOf(fault, "read"));
}

void SqliteUserDefaults::set(std::string_view key, PropertyListValue value) {
  if (!isUserDefaultsValue(value)) {
    fatalError("user defaults were given a value of a kind that they do not store");
  }
  change(key, std::move(value));
}

void SqliteUserDefaults::remove(std::string_view key) { change(key, std::nullopt); }

void SqliteUserDefaults::change(std::string_view key, std::optional<PropertyListValue> value) {
  DefaultsChanges changes;
  changes.emplace(key, std::move(value));
  const std::lock_guard lock(mutex_);
  if (const auto earlier = pending_.find(key); earlier != pending_.end()) pending_.erase(earlier);
  if (write(changes, Durability::whenConvenient, deadlineOfACall())) {
    isOnDisk_ = false;
  } else {
    pending_.merge(changes);
  }
}

std::expected<void, UserDefaultsError> SqliteUserDefaults::synchronize() {
  const std::lock_guard lock(mutex_);
  const Deadline deadline = deadlineOfACall();
  if (const auto database = file_.database(/*retry=*/true, deadline); !database) {
    return std::unexpected(errorOf(database.error(), toTheDisk));
  }
  if (isOnDisk_ && pending_.empty()) return {};
  const auto written = write(pending_, Durability::onDisk, deadline);
  if (!written) return std::unexpected(errorOf(written.error(), toTheDisk));
  pending_.clear();
  isOnDisk_ = true;
  return {};
}

std::expected<void, DefaultsFault> SqliteUserDefaults::write(const DefaultsChanges& changes,
                                                             Durability durability,
                                                             Deadline deadline) {
  std::expected<void, DefaultsFault> written;
  for (int tried = 0; tried < mostTries; ++tried) {
    const auto database = file_.database(/*retry=*/false, deadline);
    if (!database) return std::unexpected(database.error());
    written = (*database)->write(changes, durability);
    // Another process may have set the database aside meanwhile, and these changes with it.
    if (written && !(*database)->hasMoved()) return written;
    if (written) continue;
    if (written.error().kind != DefaultsFault::Kind::damaged) return written;
    file_.setAside(written.error().reason, deadline);
  }
  if (written) return std::unexpected(DefaultsFault{.reason = "it is replaced again and again"});
  return written;
}

UserDefaultsError SqliteUserDefaults::errorOf(const DefaultsFault& fault,
                                              std::string_view failed) const {
  std::string sentence = "the settings in " + file_.description() + " cannot be " +
                         std::string(failed) + ": " + fault.reason;
  if (!fault.advice.empty()) sentence += "; " + fault.advice;
  return {std::move(sentence)};
}

std::shared_ptr<UserDefaults> SqliteUserDefaultsSuites::standard() {
  const std::lock_guard lock(mutex_);
  auto& suite = suites_[standardSuite];
  if (!suite) suite = std::make_shared<SqliteUserDefaults>(directory_, standardSuite, log_);
  return suite;
}

std::shared_ptr<UserDefaults> SqliteUserDefaultsSuites::suite(std::string_view name) {
  if (!isGroupIdentifier(name)) return nullptr;
  if (name == standardSuite) return standard();
  const std::lock_guard lock(mutex_);
  if (const auto opened = suites_.find(name); opened != suites_.end()) return opened->second;
  auto suite = std::make_shared<SqliteUserDefaults>(directory_, std::string(name), log_);
  if (const auto opened = suite->open(); !opened) {
    log_.line(opened.error().sentence);
    return nullptr;
  }
  return suites_.emplace(name, std::move(suite)).first->second;
}

}  // namespace lanternfold
