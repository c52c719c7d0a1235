#include "WidgetService/MessageDocument.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace lanternfold {
namespace {

using Json = nlohmann::json;
/// None for what means nothing; "" for the message itself.
using Path = std::optional<std::string_view>;

constexpr auto knownPaths = std::to_array<std::string_view>({
    "jsonrpc",
    "id",
    "method",
    "params",
    "params.id",
    "params.status",
    "params.intent",
    "params.kind",
    "params.family",
    "params.configuration",
    "params.configuration.showTimestamp",
    "params.configuration.adapter",
    "params.configuration.adapter.identifier",
    "params.configuration.adapter.display",
    "params.context",
    "params.context.isPreview",
});

Path pathOfMember(const Path& parent, std::string_view name) {
  // A dot in a name must not make a member look like one of a member's.
  if (!parent || name.empty() || name.contains('.')) return std::nullopt;
  const auto* const found = std::ranges::find_if(knownPaths, [&](std::string_view path) {
    if (parent->empty()) return path == name;
    return path.size() == parent->size() + 1 + name.size() && path.starts_with(*parent) &&
           path[parent->size()] == '.' && path.ends_with(name);
  });
  return found == knownPaths.end() ? std::nullopt : Path(*found);
}

/// Keeps the known members of the parser's events.
class DocumentReader final : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return keep(nullptr); }
  bool boolean(bool value) override { return keep(value); }
  bool number_integer(number_integer_t value) override {
    if (value < -largestExactNumber || value > largestExactNumber) return keep(OpaqueValue::number);
    return keep(std::int64_t{value});
  }
  bool number_unsigned(number_unsigned_t value) override {
    if (value > number_unsigned_t{largestExactNumber}) return keep(OpaqueValue::number);
    return keep(static_cast<std::int64_t>(value));
  }
  bool number_float(number_float_t, const string_t&) override { return keep(OpaqueValue::number); }
  bool string(string_t& value) override {
    return member_ ? keep(std::move(value)) : keep(std::string());
  }
  bool binary(binary_t&) override { return keep(OpaqueValue::array); }

  bool start_object(std::size_t) override {
    const bool isMessage = open_.empty();
    if (isMessage) document_.isObject = true;
    return open(isMessage ? "" : member_, OpaqueValue::object);
  }
  bool start_array(std::size_t) override {
    if (open_.empty()) document_.isArray = true;
    return open(std::nullopt, OpaqueValue::array);
  }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }

  bool key(string_t& name) override {
    member_ = pathOfMember(open_.back(), name);
    return true;
  }

  bool parse_error(std::size_t position, const std::string&, const Json::exception&) override {
    return fail("the line is not JSON from byte " + std::to_string(position) + " on");
  }

  [[nodiscard]] const std::string& fault() const { return fault_; }
  [[nodiscard]] MessageDocument takeDocument() { return std::move(document_); }

 private:
  bool keep(MessageValue value) {
    const Path path = std::exchange(member_, std::nullopt);
    if (!path) return true;
    const bool isNew = document_.members.insert_or_assign(*path, std::move(value)).second;
    if (!isNew) document_.repeated.insert(*path);
    return true;
  }

  bool open(Path path, OpaqueValue value) {
    if (open_.size() == deepestServiceMessage) {
      return fail("the line nests deeper than " + std::to_string(deepestServiceMessage) +
                  " levels");
    }
    open_.push_back(path);
    return keep(value);
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  bool fail(std::string fault) {
    fault_ = std::move(fault);
    return false;
  }

  MessageDocument document_;
  std::vector<Path> open_;  // the objects and arrays around what comes next
  Path member_;             // whose value comes next
  std::string fault_;
};

}  // namespace

const MessageValue* MessageDocument::find(std::string_view path) const {
  const auto found = members.find(path);
  return found == members.end() ? nullptr : &found->second;
}

std::expected<MessageDocument, std::string> readMessageDocument(std::string_view text) {
  // The parser takes a zero byte for the end of the text and would not look at what stands behind.
  if (text.contains('\0')) return std::unexpected("the line holds a zero byte, which is not JSON");
  DocumentReader reader;
  const bool isRead = Json::sax_parse(text.begin(), text.end(), &reader);
  if (!isRead) return std::unexpected(reader.fault());
  return reader.takeDocument();
}

}  // namespace lanternfold
