// Loosely typed values: what a property list, a dictionary of kernel figures or a stored setting
// holds before a typed record is made of it.
//
// Made by: `SNUtils`, the settings store. Read by: whoever turns them into records, checking kinds.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Support/PropertyListKey.h"

namespace lanternfold {

class PropertyListValue;

/// An ordered list of values.
using PropertyListArray = std::vector<PropertyListValue>;

/// A string-keyed dictionary that keeps the order in which keys were first set. Look-up walks the
/// entries: it is made for the dozen keys of a record, where one allocation for all entries beats a
/// node for each.
class PropertyListDictionary {
 public:
  using Entry = std::pair<PropertyListKey, PropertyListValue>;

  PropertyListDictionary();
  PropertyListDictionary(std::initializer_list<Entry> entries);
  PropertyListDictionary(const PropertyListDictionary&);
  PropertyListDictionary(PropertyListDictionary&&) noexcept;
  PropertyListDictionary& operator=(const PropertyListDictionary&);
  PropertyListDictionary& operator=(PropertyListDictionary&&) noexcept;
  ~PropertyListDictionary();

  /// The value under `key`, or null.
  [[nodiscard]] const PropertyListValue* find(std::string_view key) const;
  [[nodiscard]] PropertyListValue* find(std::string_view key);

  /// Stores `value` under `key`, in the place of an earlier one.
  void set(PropertyListKey key, PropertyListValue value);
  /// Appends without looking for an earlier entry: the caller knows that `key` is new. The value is
  /// made in its place of what a `PropertyListValue` can be made of.
  template <typename Value>
  void append(PropertyListKey key, Value&& value);
  void reserve(std::size_t count);
  void erase(std::string_view key);

  [[nodiscard]] std::size_t size() const;
  [[nodiscard]] bool empty() const { return size() == 0; }
  [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }

  /// Equal when both hold the same keys with equal values, in any order.
  friend bool operator==(const PropertyListDictionary& left, const PropertyListDictionary& right);

 private:
  std::vector<Entry> entries_;
};

/// One value of any kind. Signed and unsigned integers and booleans are kinds of their own and
/// never equal across kinds; `asInteger` and `asUnsigned` convert between the integer kinds.
class PropertyListValue {
 public:
  using Data = std::vector<std::byte>;
  using Date = std::chrono::system_clock::time_point;
  using Storage = std::variant<bool, std::int64_t, std::uint64_t, double, std::string, Date, Data,
                               PropertyListArray, PropertyListDictionary>;

  PropertyListValue(bool value) : storage_(value) {}
  PropertyListValue(std::int64_t value) : storage_(value) {}
  PropertyListValue(std::uint64_t value) : storage_(value) {}
  PropertyListValue(int value) : storage_(std::int64_t{value}) {}
  PropertyListValue(double value) : storage_(value) {}
  PropertyListValue(std::string value) : storage_(std::move(value)) {}
  PropertyListValue(std::string_view value) : storage_(std::string(value)) {}
  PropertyListValue(const char* value) : storage_(std::string(value)) {}
  PropertyListValue(Date value) : storage_(value) {}
  PropertyListValue(Data value) : storage_(std::move(value)) {}
  PropertyListValue(PropertyListArray value) : storage_(std::move(value)) {}
  PropertyListValue(PropertyListDictionary value) : storage_(std::move(value)) {}

  [[nodiscard]] const std::string* asString() const { return std::get_if<std::string>(&storage_); }
  [[nodiscard]] const PropertyListArray* asArray() const {
    return std::get_if<PropertyListArray>(&storage_);
  }
  [[nodiscard]] PropertyListArray* asArray() { return std::get_if<PropertyListArray>(&storage_); }
  [[nodiscard]] const PropertyListDictionary* asDictionary() const {
    return std::get_if<PropertyListDictionary>(&storage_);
  }
  [[nodiscard]] PropertyListDictionary* asDictionary() {
    return std::get_if<PropertyListDictionary>(&storage_);
  }
  [[nodiscard]] const Date* asDate() const { return std::get_if<Date>(&storage_); }
  [[nodiscard]] const Data* asData() const { return std::get_if<Data>(&storage_); }
  [[nodiscard]] const double* asDouble() const { return std::get_if<double>(&storage_); }

  /// A number used as a boolean: the boolean itself, or an integer 0 or 1; none otherwise.
  [[nodiscard]] std::optional<bool> asBoolean() const;
  /// An integer of either sign that fits; none for another kind or one out of range.
  [[nodiscard]] std::optional<std::int64_t> asInteger() const;
  [[nodiscard]] std::optional<std::uint64_t> asUnsigned() const;

  [[nodiscard]] const Storage& storage() const { return storage_; }

  friend bool operator==(const PropertyListValue&, const PropertyListValue&) = default;

 private:
  Storage storage_;
};

template <typename Value>
void PropertyListDictionary::append(PropertyListKey key, Value&& value) {
  entries_.emplace_back(std::move(key), std::forward<Value>(value));
}

}  // namespace lanternfold
