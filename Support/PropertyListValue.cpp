#include "Support/PropertyListValue.h"

#include <algorithm>
#include <limits>

namespace lanternfold {

PropertyListDictionary::PropertyListDictionary() = default;
PropertyListDictionary::PropertyListDictionary(std::initializer_list<Entry> entries) {
  entries_.reserve(entries.size());
  for (const Entry& entry : entries) set(entry.first, entry.second);
}
PropertyListDictionary::PropertyListDictionary(const PropertyListDictionary&) = default;
PropertyListDictionary::PropertyListDictionary(PropertyListDictionary&&) noexcept = default;
PropertyListDictionary& PropertyListDictionary::operator=(const PropertyListDictionary&) = default;
PropertyListDictionary& PropertyListDictionary::operator=(PropertyListDictionary&&) noexcept =
    default;
PropertyListDictionary::~PropertyListDictionary() = default;

const PropertyListValue* PropertyListDictionary::find(std::string_view key) const {
  const auto entry =
      std::ranges::find_if(entries_, [key](const Entry& each) { return each.first == key; });
  return entry == entries_.end() ? nullptr : &entry->second;
}

PropertyListValue* PropertyListDictionary::find(std::string_view key) {
  const auto entry =
      std::ranges::find_if(entries_, [key](const Entry& each) { return each.first == key; });
  return entry == entries_.end() ? nullptr : &entry->second;
}

void PropertyListDictionary::set(PropertyListKey key, PropertyListValue value) {
  if (PropertyListValue* existing = find(key)) {
    *existing = std::move(value);
  } else {
    append(std::move(key), std::move(value));
  }
}

void PropertyListDictionary::reserve(std::size_t count) { entries_.reserve(count); }

void PropertyListDictionary::erase(std::string_view key) {
  std::erase_if(entries_, [key](const Entry& entry) { return entry.first == key; });
}

std::size_t PropertyListDictionary::size() const { return entries_.size(); }

bool operator==(const PropertyListDictionary& left, const PropertyListDictionary& right) {
  return left.size() == right.size() &&
         std::ranges::all_of(left.entries_, [&right](const PropertyListDictionary::Entry& entry) {
           const PropertyListValue* other = right.find(entry.first);
           return other != nullptr && *other == entry.second;
         });
}

std::optional<bool> PropertyListValue::asBoolean() const {
  if (const bool* value = std::get_if<bool>(&storage_)) return *value;
  const auto integer = asInteger();
  if (!integer || *integer < 0 || *integer > 1) return std::nullopt;
  return *integer == 1;
}

std::optional<std::int64_t> PropertyListValue::asInteger() const {
  if (const auto* value = std::get_if<std::int64_t>(&storage_)) return *value;
  if (const auto* value = std::get_if<std::uint64_t>(&storage_)) {
    constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (*value <= largest) return static_cast<std::int64_t>(*value);
  }
  return std::nullopt;
}

std::optional<std::uint64_t> PropertyListValue::asUnsigned() const {
  if (const auto* value = std::get_if<std::uint64_t>(&storage_)) return *value;
  if (const auto* value = std::get_if<std::int64_t>(&storage_)) {
    if (*value >= 0) return static_cast<std::uint64_t>(*value);
  }
  return std::nullopt;
}

}  // namespace lanternfold
