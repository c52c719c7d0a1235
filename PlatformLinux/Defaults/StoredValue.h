// A setting as the two columns of its row: the name of its kind and a value that SQLite can keep.
//
// Read by: `SqliteUserDefaults`. The form is written down in Docs/formats/defaults-database.md.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "Support/PropertyListValue.h"

namespace lanternfold {

struct StoredValue {
  using Value = std::variant<std::int64_t, std::string, PropertyListValue::Data>;

  std::string kind;
  Value value;
  friend bool operator==(const StoredValue&, const StoredValue&) = default;
};

/// `value` is one that user defaults take (`isUserDefaultsValue`).
[[nodiscard]] StoredValue storedValueOf(const PropertyListValue& value);

/// None for a kind that is not known, a column of another type than its kind has, and bytes that
/// mean nothing.
[[nodiscard]] std::optional<PropertyListValue> propertyListValueOf(const StoredValue& stored);

}  // namespace lanternfold
