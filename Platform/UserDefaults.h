// The seam to the user's stored settings: suites of typed values under text keys.
//
// Linux side: `SqliteUserDefaults`, one database a suite. Fake: `FakeUserDefaults`. Both pass the
// same contract tests.
#pragma once

#include <algorithm>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "Support/PropertyListValue.h"

namespace lanternfold {

/// Why a suite could not be read or brought to the disk: a sentence for the user, with what to do.
struct UserDefaultsError {
  std::string sentence;
  friend bool operator==(const UserDefaultsError&, const UserDefaultsError&) = default;
};

inline constexpr int deepestUserDefaultsValue = 8;

/// Whether user defaults take a value: a string, an integer of either kind, a date, data, or a
/// dictionary of these, dictionaries within dictionaries to `levels` of them.
[[nodiscard]] inline bool isUserDefaultsValue(const PropertyListValue& value,
                                              int levels = deepestUserDefaultsValue) {
  const PropertyListValue::Storage& storage = value.storage();
  if (const PropertyListDictionary* dictionary = value.asDictionary()) {
    return levels > 0 && std::ranges::all_of(dictionary->entries(), [levels](const auto& entry) {
             return isUserDefaultsValue(entry.second, levels - 1);
           });
  }
  return std::holds_alternative<std::string>(storage) ||
         std::holds_alternative<std::int64_t>(storage) ||
         std::holds_alternative<std::uint64_t>(storage) ||
         std::holds_alternative<PropertyListValue::Date>(storage) ||
         std::holds_alternative<PropertyListValue::Data>(storage);
}

/// One suite. Any thread; any number of processes at once: what another one has set is seen by the
/// next look, and no update of either is lost. Calls may block for the disk, and a call waits for
/// other processes no longer than a second altogether. Setting a value that is none of theirs
/// (`isUserDefaultsValue`) stops the program.
class UserDefaults {
 public:
  /// None where there is no value; an error where it is not known whether there is one.
  using Look = std::expected<std::optional<PropertyListValue>, UserDefaultsError>;

  virtual ~UserDefaults() = default;

  /// The value under `key`. After an error there may well be one: whoever writes back what was
  /// looked up must not take it for none. A suite that could not be opened stays unread until
  /// `synchronize` opens it.
  [[nodiscard]] virtual Look object(std::string_view key) const = 0;

  /// Stores `value` in the place of an earlier one. What the disk does not take is kept in memory,
  /// seen by this suite's own looks, and tried again by `synchronize`.
  virtual void set(std::string_view key, PropertyListValue value) = 0;

  /// Forgets the value under `key`, if there is one.
  virtual void remove(std::string_view key) = 0;

  /// Waits until everything that was set or removed is on the disk.
  [[nodiscard]] virtual std::expected<void, UserDefaultsError> synchronize() = 0;
};

/// Opens suites; any thread.
class UserDefaultsSuites {
 public:
  virtual ~UserDefaultsSuites() = default;

  /// The suite of the program without a group; never null: a database that cannot be opened leaves
  /// it in memory, which `synchronize` reports.
  [[nodiscard]] virtual std::shared_ptr<UserDefaults> standard() = 0;

  /// The suite of an application group; null when it cannot be opened or `name` is none
  /// (`isGroupIdentifier`).
  [[nodiscard]] virtual std::shared_ptr<UserDefaults> suite(std::string_view name) = 0;
};

}  // namespace lanternfold
