#include "WidgetService/MessageParameters.h"

#include "WidgetService/QuotedText.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {

bool MessageParameters::hasObject(std::string_view path) {
  const MessageValue* const value = find(path);
  if (value == nullptr || std::holds_alternative<std::nullptr_t>(*value)) return false;
  if (*value == MessageValue(OpaqueValue::object)) return true;
  fail(path, "is not an object");
  return false;
}

std::string MessageParameters::text(std::string_view path, std::size_t longest) {
  std::optional<std::string> text = optionalText(path, longest);
  if (!text) fail(path, "is missing");
  return text.value_or(std::string());
}

std::optional<std::string> MessageParameters::optionalText(std::string_view path,
                                                           std::size_t longest) {
  const MessageValue* const value = find(path);
  if (value == nullptr || std::holds_alternative<std::nullptr_t>(*value)) return std::nullopt;
  const auto* const text = std::get_if<std::string>(value);
  if (text == nullptr) {
    fail(path, "is not a text");
    return std::nullopt;
  }
  if (text->size() > longest) {
    fail(path, "is longer than " + std::to_string(longest) + " bytes");
    return std::nullopt;
  }
  return *text;
}

std::optional<bool> MessageParameters::optionalFlag(std::string_view path) {
  const MessageValue* const value = find(path);
  if (value == nullptr || std::holds_alternative<std::nullptr_t>(*value)) return std::nullopt;
  const auto* const flag = std::get_if<bool>(value);
  if (flag != nullptr) return *flag;
  fail(path, "is neither true nor false");
  return std::nullopt;
}

std::int64_t MessageParameters::number(std::string_view path, std::int64_t smallest,
                                       std::int64_t largest) {
  const MessageValue* const value = find(path);
  const auto* const number = value == nullptr ? nullptr : std::get_if<std::int64_t>(value);
  if (number != nullptr && *number >= smallest && *number <= largest) return *number;
  fail(path,
       "is no whole number from " + std::to_string(smallest) + " to " + std::to_string(largest));
  return smallest;
}

RequestIdentifier MessageParameters::identifier(std::string_view path) {
  const MessageValue* const value = find(path);
  if (value == nullptr) {
    fail(path, "is missing");
    return nullptr;
  }
  if (const auto* const number = std::get_if<std::int64_t>(value)) return *number;
  if (std::holds_alternative<std::nullptr_t>(*value)) return nullptr;
  const auto* const text = std::get_if<std::string>(value);
  if (text == nullptr) {
    fail(path, "is neither a text nor null nor a whole number within ±2^53");
    return nullptr;
  }
  if (text->size() <= longestIdentifierText) return *text;
  fail(path, "is longer than " + std::to_string(longestIdentifierText) + " bytes");
  return nullptr;
}

WidgetFamily MessageParameters::family(std::string_view path) {
  const std::string name = text(path, longestKindText);
  const std::optional<WidgetFamily> family = widgetFamilyOfName(name);
  if (!family) fail(path, ": " + quotedText(name) + " is none of small, medium, large");
  return family.value_or(WidgetFamily::small);
}

const MessageValue* MessageParameters::find(std::string_view path) {
  if (message_.repeated.contains(path)) fail(path, "stands twice");
  return message_.find(path);
}

void MessageParameters::fail(std::string_view path, std::string_view clause) {
  if (!fault_.empty()) return;
  fault_ = path;
  if (!clause.starts_with(':')) fault_ += ' ';
  fault_ += clause;
}

}  // namespace lanternfold
