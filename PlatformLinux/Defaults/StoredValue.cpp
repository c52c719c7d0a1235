#include "PlatformLinux/Defaults/StoredValue.h"

#include <charconv>
#include <chrono>
#include <string_view>

#include "PlatformLinux/Defaults/DictionaryCoding.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

using Date = PropertyListValue::Date;
using Data = PropertyListValue::Data;

struct ToStored {
  StoredValue operator()(const std::string& text) const { return {"string", text}; }
  StoredValue operator()(std::int64_t value) const { return {"integer", value}; }
  /// SQLite's integers end at 2^63 - 1: as decimal digits.
  StoredValue operator()(std::uint64_t value) const { return {"unsigned", std::to_string(value)}; }
  StoredValue operator()(Date date) const {
    using std::chrono::nanoseconds;
    const auto since1970 = std::chrono::duration_cast<nanoseconds>(date.time_since_epoch());
    return {"date", std::int64_t{since1970.count()}};
  }
  StoredValue operator()(const Data& data) const { return {"data", data}; }
  StoredValue operator()(const PropertyListDictionary& dictionary) const {
    return {"dictionary", encodeDictionary(dictionary)};
  }
  template <typename Other>
  StoredValue operator()(const Other&) const {
    fatalError("a kind of value that user defaults do not take was to be stored");
  }
};

std::optional<PropertyListValue> fromNumber(std::string_view kind, std::int64_t value) {
  if (kind == "integer") return PropertyListValue(value);
  if (kind == "date") return PropertyListValue(Date(std::chrono::nanoseconds(value)));
  return std::nullopt;
}

std::optional<PropertyListValue> fromText(std::string_view kind, const std::string& text) {
  if (kind == "string") return PropertyListValue(text);
  if (kind != "unsigned") return std::nullopt;
  std::uint64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || last != end) return std::nullopt;
  return PropertyListValue(value);
}

std::optional<PropertyListValue> fromBytes(std::string_view kind, const Data& bytes) {
  if (kind == "data") return PropertyListValue(bytes);
  if (kind != "dictionary") return std::nullopt;
  auto dictionary = decodeDictionary(bytes);
  if (!dictionary) return std::nullopt;
  return PropertyListValue(std::move(*dictionary));
}

}  // namespace

StoredValue storedValueOf(const PropertyListValue& value) {
  return std::visit(ToStored{}, value.storage());
}

std::optional<PropertyListValue> propertyListValueOf(const StoredValue& stored) {
  if (const auto* number = std::get_if<std::int64_t>(&stored.value)) {
    return fromNumber(stored.kind, *number);
  }
  if (const auto* text = std::get_if<std::string>(&stored.value)) {
    return fromText(stored.kind, *text);
  }
  return fromBytes(stored.kind, std::get<Data>(stored.value));
}

}  // namespace lanternfold
