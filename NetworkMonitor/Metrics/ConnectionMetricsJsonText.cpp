#include "NetworkMonitor/Metrics/ConnectionMetricsJsonText.h"

#include <algorithm>
#include <array>
#include <charconv>

#include <nlohmann/json.hpp>

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"

namespace lanternfold {

void appendConnectionMetricsJson(std::string& text, const ConnectionMetrics& metrics) {
  char separator = '{';
  for (const auto& field : connectionMetricsFields) {
    text += separator;
    text += '"';
    text += field.key;
    text += "\":";
    std::array<char, 20> digits{};  // as many as 2^64 - 1 has
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), metrics.*field.member).ptr;
    text.append(digits.data(), end);
    separator = ',';
  }
  text += '}';
}

bool appendJsonString(std::string& text, std::string_view value) {
  const bool isPlain = std::ranges::all_of(
      value, [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
  if (isPlain) {
    text += '"';
    text += value;
    text += '"';
    return true;
  }
  try {
    text += nlohmann::json(value).dump();
    return true;
  } catch (const nlohmann::json::type_error&) {
    return false;
  }
}

}  // namespace lanternfold
