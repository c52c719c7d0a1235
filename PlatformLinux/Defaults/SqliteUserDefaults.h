// The production side of `UserDefaults`: a SQLite database for each suite, in the user's data
// folder.
//
// Made by: the composition. Read by: the metrics storage.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "Platform/DiagnosticLog.h"
#include "Platform/UserDefaults.h"
#include "PlatformLinux/Defaults/DataDirectory.h"
#include "PlatformLinux/Defaults/DefaultsFile.h"

namespace lanternfold {

/// What is set survives the end of the program at once, and a loss of power after `synchronize`. A
/// database that could not be opened is tried again by `synchronize` alone.
class SqliteUserDefaults final : public UserDefaults {
 public:
  /// `suite` is a file name. The references outlive the object.
  SqliteUserDefaults(const DataDirectory& directory, std::string suite, DiagnosticLog& log)
      : file_(directory, std::move(suite), log) {}

  /// Opens the database now; the sentence says why not.
  [[nodiscard]] std::expected<void, UserDefaultsError> open();

  [[nodiscard]] Look object(std::string_view key) const override;
  void set(std::string_view key, PropertyListValue value) override;
  void remove(std::string_view key) override;
  [[nodiscard]] std::expected<void, UserDefaultsError> synchronize() override;

 private:
  using Durability = DefaultsDatabase::Durability;
  using Deadline = DefaultsDatabase::Deadline;

  void change(std::string_view key, std::optional<PropertyListValue> value);
  [[nodiscard]] std::expected<void, DefaultsFault> write(const DefaultsChanges& changes,
                                                         Durability durability, Deadline deadline);
  /// `failed` is what the settings cannot be, a participle.
  [[nodiscard]] UserDefaultsError errorOf(const DefaultsFault& fault,
                                          std::string_view failed) const;

  mutable std::mutex mutex_;
  mutable DefaultsFile file_;  ///< guarded by `mutex_`
  DefaultsChanges pending_;    ///< guarded by `mutex_`; what the disk has not taken
  bool isOnDisk_ = true;       ///< guarded by `mutex_`; nothing was written since `synchronize`
};

/// Any thread. A suite is opened once and the same from then on.
class SqliteUserDefaultsSuites final : public UserDefaultsSuites {
 public:
  /// Both outlive the suites.
  SqliteUserDefaultsSuites(const DataDirectory& directory, DiagnosticLog& log)
      : directory_(directory), log_(log) {}

  [[nodiscard]] std::shared_ptr<UserDefaults> standard() override;
  /// Why a suite could not be opened is said in the diagnostic log. The name "standard" gives the
  /// suite of the program without a group.
  [[nodiscard]] std::shared_ptr<UserDefaults> suite(std::string_view name) override;

 private:
  const DataDirectory& directory_;
  DiagnosticLog& log_;
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<SqliteUserDefaults>, std::less<>>
      suites_;  ///< guarded by `mutex_`
};

}  // namespace lanternfold
