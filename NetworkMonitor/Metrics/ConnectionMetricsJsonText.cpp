#include "NetworkMonitor/Metrics/ConnectionMetricsJsonText.h"

#include <algorithm>
#include <array>
#include <charconv>

#include <nlohmann/json.hpp>

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"

namespace lanternfold {
namespace {

/// Takes `expected` off the front of `text`, if it stands there.
bool take(std::string_view& text, std::string_view expected) {
  if (!text.starts_with(expected)) return false;
  text.remove_prefix(expected.size());
  return true;
}

/// Takes an unsigned number off the front of `text`, if one stands there that JSON allows.
bool take(std::string_view& text, std::uint64_t& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{}) return false;
  const auto digits = static_cast<std::size_t>(end - text.data());
  if (digits > 1 && text.front() == '0') return false;
  text.remove_prefix(digits);
  return true;
}

}  // namespace

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

std::optional<ConnectionMetrics> decodeWrittenConnectionMetrics(std::string_view text) {
  ConnectionMetrics metrics;
  std::string_view separator = "{";
  for (const auto& field : connectionMetricsFields) {
    const bool isThere = take(text, separator) && take(text, "\"") && take(text, field.key) &&
                         take(text, "\":") && take(text, metrics.*field.member);
    if (!isThere) return std::nullopt;
    separator = ",";
  }
  return text == "}" ? std::optional(metrics) : std::nullopt;
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
