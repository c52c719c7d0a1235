// Messages of a host as tests write them, and what becomes of them as text.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "WidgetService/ServiceMessage.h"

namespace lanternfold {

inline std::string idText(const RequestIdentifier& id) {
  if (const auto* const number = std::get_if<std::int64_t>(&id)) return std::to_string(*number);
  if (const auto* const text = std::get_if<std::string>(&id)) return '"' + *text + '"';
  return "null";
}

/// "ID CODE SENTENCE" of a message that is refused.
inline std::string refusalOf(std::string_view line) {
  const HostMessage message = parseHostMessage(line);
  const auto* const refused = std::get_if<RefusedMessage>(&message);
  if (refused == nullptr) return "not refused";
  return idText(refused->id) + " " + std::to_string(static_cast<int>(refused->error.code)) + " " +
         refused->error.message;
}

/// A message with id 7 whose further members are given.
inline std::string withId(const std::string& members) {
  return R"({"jsonrpc":"2.0","id":7,)" + members + "}";
}

inline std::string timelineWith(const std::string& parameters) {
  return withId(R"("method":"widget/timeline","params":{)" + parameters + "}");
}

}  // namespace lanternfold
