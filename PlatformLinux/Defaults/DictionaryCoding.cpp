#include "PlatformLinux/Defaults/DictionaryCoding.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "Platform/UserDefaults.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

using Json = nlohmann::ordered_json;
using Date = PropertyListValue::Date;

// CBOR has one kind of whole numbers: ours are told apart by a word before the number.
constexpr std::string_view integerKind = "integer";
constexpr std::string_view unsignedKind = "unsigned";
constexpr std::string_view dateKind = "date";

Json number(std::string_view kind, Json value) { return Json::array({kind, std::move(value)}); }

Json jsonOf(const PropertyListDictionary& dictionary);

/// The kinds that user defaults take; the seam lets no other one through.
struct ToJson {
  Json operator()(const std::string& text) const { return text; }
  Json operator()(std::int64_t value) const { return number(integerKind, value); }
  Json operator()(std::uint64_t value) const { return number(unsignedKind, value); }
  Json operator()(Date date) const {
    using std::chrono::nanoseconds;
    const auto since1970 = std::chrono::duration_cast<nanoseconds>(date.time_since_epoch());
    return number(dateKind, std::int64_t{since1970.count()});
  }
  Json operator()(const PropertyListValue::Data& data) const {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(data.data());
    return Json::binary(std::vector<std::uint8_t>(bytes, bytes + data.size()));
  }
  Json operator()(const PropertyListDictionary& dictionary) const { return jsonOf(dictionary); }
  template <typename Other>
  Json operator()(const Other&) const {
    fatalError("a kind of value that user defaults do not take was to be stored");
  }
};

Json jsonOf(const PropertyListDictionary& dictionary) {
  Json::object_t object;
  object.reserve(dictionary.size());
  for (const auto& [key, value] : dictionary.entries()) {
    // The dictionary's keys differ; the object's own insertion would compare each with all before.
    object.Json::object_t::Container::emplace_back(std::string(std::string_view(key)),
                                                   std::visit(ToJson{}, value.storage()));
  }
  return object;
}

/// Makes a dictionary of the decoder's events; an operation that answers false ends the decoding,
/// so nothing nests deeper than is allowed.
class DictionaryBuilder final : public nlohmann::json_sax<nlohmann::json> {
 public:
  [[nodiscard]] std::optional<PropertyListDictionary> take() { return std::move(result_); }

  bool null() override { return false; }
  bool boolean(bool) override { return false; }
  bool number_float(number_float_t, const string_t&) override { return false; }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
    return false;
  }

  bool string(string_t& text) override {
    if (number_ == Number::none) return put(std::move(text));
    numberKind_ = std::move(text);
    return std::exchange(number_, Number::value) == Number::kind;
  }
  bool binary(binary_t& data) override {
    const auto* const bytes = reinterpret_cast<const std::byte*>(data.data());
    return !data.has_subtype() && put(PropertyListValue::Data(bytes, bytes + data.size()));
  }
  /// Of a number below zero; one that is too small for the kind comes out of the decoder above.
  bool number_integer(number_integer_t value) override {
    return value < 0 && putNumber([value](std::string_view kind) {
             return kind == unsignedKind ? std::nullopt : signedNumber(kind, value);
           });
  }
  bool number_unsigned(number_unsigned_t value) override {
    return putNumber([value](std::string_view kind) -> std::optional<PropertyListValue> {
      if (kind == unsignedKind) return PropertyListValue(std::uint64_t{value});
      if (!std::in_range<std::int64_t>(value)) return std::nullopt;
      return signedNumber(kind, static_cast<std::int64_t>(value));
    });
  }

  bool start_object(std::size_t) override {
    if (number_ != Number::none || open_.size() == deepestUserDefaultsValue) return false;
    open_.emplace_back();
    return true;
  }
  bool key(string_t& text) override {
    open_.back().key = text;
    return open_.back().keys.insert(std::move(text)).second;
  }
  bool end_object() override {
    PropertyListDictionary dictionary = std::move(open_.back().dictionary);
    open_.pop_back();
    if (!open_.empty()) return put(std::move(dictionary));
    result_ = std::move(dictionary);
    return true;
  }
  bool start_array(std::size_t) override {
    return !open_.empty() && std::exchange(number_, Number::kind) == Number::none;
  }
  bool end_array() override { return std::exchange(number_, Number::none) == Number::end; }

 private:
  struct Open {
    PropertyListDictionary dictionary;
    std::unordered_set<std::string> keys;
    std::string key;
  };
  /// What comes next of a number that is being read.
  enum class Number { none, kind, value, end };

  static std::optional<PropertyListValue> signedNumber(std::string_view kind, std::int64_t value) {
    if (kind == integerKind) return PropertyListValue(value);
    if (kind == dateKind) return PropertyListValue(Date(std::chrono::nanoseconds(value)));
    return std::nullopt;
  }

  template <typename Make>
  bool putNumber(Make make) {
    if (std::exchange(number_, Number::none) != Number::value) return false;
    auto value = make(std::string_view(numberKind_));
    if (!value || !put(std::move(*value))) return false;
    number_ = Number::end;
    return true;
  }

  bool put(PropertyListValue value) {
    if (open_.empty() || number_ != Number::none) return false;
    open_.back().dictionary.append(open_.back().key, std::move(value));
    return true;
  }

  std::vector<Open> open_;
  Number number_ = Number::none;
  std::string numberKind_;
  std::optional<PropertyListDictionary> result_;
};

}  // namespace

PropertyListValue::Data encodeDictionary(const PropertyListDictionary& dictionary) {
  const std::vector<std::uint8_t> bytes = Json::to_cbor(jsonOf(dictionary));
  const auto* const first = reinterpret_cast<const std::byte*>(bytes.data());
  return {first, first + bytes.size()};
}

std::optional<PropertyListDictionary> decodeDictionary(std::span<const std::byte> bytes) {
  const auto* const first = reinterpret_cast<const std::uint8_t*>(bytes.data());
  DictionaryBuilder builder;
  const bool whole = nlohmann::json::sax_parse(first, first + bytes.size(), &builder,
                                               nlohmann::json::input_format_t::cbor);
  return whole ? builder.take() : std::nullopt;
}

}  // namespace lanternfold
