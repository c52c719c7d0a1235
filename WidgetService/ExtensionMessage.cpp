#include "WidgetService/ExtensionMessage.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "Support/EscapedText.h"
#include "WidgetService/MessageDocument.h"
#include "WidgetService/QuotedText.h"
#include "WidgetService/ServiceAnswer.h"

namespace lanternfold {
namespace {

/// The message, its result, the list of entries and the entry.
constexpr std::size_t levelsAroundArchive = 4;

ExtensionNonsense nonsense(std::string fault) { return {.fault = std::move(fault)}; }

/// Null when `value` is no object that has it.
ArchiveValue* member(ArchiveValue& value, std::string_view name) {
  auto* const object = std::get_if<ArchiveValue::Object>(&value.value);
  if (object == nullptr) return nullptr;
  const auto found = std::ranges::find(*object, name, &ArchiveMember::name);
  return found == object->end() ? nullptr : &found->value;
}

/// Null for what is of another kind, or is not there.
template <typename Kind>
const Kind* get(const ArchiveValue* value) {
  return value == nullptr ? nullptr : std::get_if<Kind>(&value->value);
}

/// None for what is no identifier.
std::optional<RequestIdentifier> identifierOf(const ArchiveValue& value) {
  if (std::holds_alternative<std::monostate>(value.value)) return nullptr;
  if (const auto* const text = get<std::string>(&value)) {
    if (text->size() > longestIdentifierText) return std::nullopt;
    return *text;
  }
  const auto* const number = get<double>(&value);
  constexpr auto largest = static_cast<double>(largestExactNumber);
  if (number == nullptr || std::abs(*number) > largest || *number != std::trunc(*number)) {
    return std::nullopt;
  }
  return static_cast<std::int64_t>(*number);
}

ExtensionMessage parseNotification(const std::string& method, ArchiveValue& message) {
  if (method != "location/request" || member(message, "id") != nullptr) {
    return UnknownExtensionMessage{};
  }
  ArchiveValue* const parameters = member(message, "params");
  const bool* const whenInUse =
      parameters == nullptr ? nullptr : get<bool>(member(*parameters, "whenInUse"));
  if (whenInUse == nullptr) return nonsense("params.whenInUse is neither true nor false");
  return ConsentNotification{.whenInUse = *whenInUse};
}

ExtensionMessage parseRefusal(RequestIdentifier id, ArchiveValue& error) {
  if (get<double>(member(error, "code")) == nullptr) return nonsense("error.code is no number");
  const auto* const text = get<std::string>(member(error, "message"));
  if (text == nullptr) return nonsense("error.message is no text");
  const std::string shown = escapedText(beginningOf(*text, longestErrorText));
  return ReceivedRefusal{.id = std::move(id),
                         .message = std::string(beginningOf(shown, longestErrorText))};
}

ExtensionMessage parseAnswer(ArchiveValue& message) {
  const ArchiveValue* const idValue = member(message, "id");
  if (idValue == nullptr) return nonsense("method and id are missing");
  auto id = identifierOf(*idValue);
  if (!id) return nonsense("id is neither a text nor null nor a whole number within ±2^53");
  ArchiveValue* const error = member(message, "error");
  ArchiveValue* const result = member(message, "result");
  if (error != nullptr && result != nullptr) return nonsense("there are a result and an error");
  if (error != nullptr) return parseRefusal(*std::move(id), *error);
  if (result == nullptr) return nonsense("there is neither a result nor an error");
  return ReceivedAnswer{.id = *std::move(id), .result = std::move(*result)};
}

}  // namespace

ExtensionMessage parseExtensionMessage(std::string_view line) {
  auto message = parseArchive(line, levelsAroundArchive);
  if (!message) {
    const ViewArchiveFault& fault = message.error();
    return nonsense(escapedText(fault.path.empty() ? "" : fault.path + ": ") + fault.sentence);
  }
  if (!std::holds_alternative<ArchiveValue::Object>(message->value)) {
    return nonsense("a message is an object");
  }
  const auto* const version = get<std::string>(member(*message, "jsonrpc"));
  if (version == nullptr || *version != "2.0") return nonsense("jsonrpc is not \"2.0\"");
  const ArchiveValue* const method = member(*message, "method");
  if (method == nullptr) return parseAnswer(*message);
  if (const auto* const name = get<std::string>(method)) return parseNotification(*name, *message);
  return nonsense("method is not a text");
}

}  // namespace lanternfold
