#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"

#include <algorithm>
#include <array>
#include <functional>

#include <nlohmann/json.hpp>

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJsonText.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJsonValue.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

using Json = nlohmann::ordered_json;
using Fault = ConnectionMetricsJsonError::Fault;

/// Watches a text being parsed for what the parsed value no longer shows.
class ParseWatcher {
 public:
  /// Called by the parser for every event; whether to keep the value.
  bool operator()(int depth, Json::parse_event_t event, const Json& parsed) {
    if (event == Json::parse_event_t::key && depth == 1)
      noteKey(parsed.get_ref<const std::string&>());
    const bool opens =
        event == Json::parse_event_t::object_start || event == Json::parse_event_t::array_start;
    if (!opens || depth <= deepestConnectionMetricsJson) return true;
    tooDeep_ = true;
    return false;
  }

  [[nodiscard]] bool tooDeep() const { return tooDeep_; }
  /// The record's key read last; empty when none was.
  [[nodiscard]] std::string_view lastKey() const { return lastKey_; }
  /// The first of the record's keys that stood twice; empty when none did.
  [[nodiscard]] std::string_view duplicateKey() const { return duplicateKey_; }

 private:
  void noteKey(std::string_view key) {
    const auto field =
        std::ranges::find(connectionMetricsFields, key, &ConnectionMetricsField::key);
    if (field == connectionMetricsFields.end()) return;
    bool& seen = seen_[static_cast<std::size_t>(field - connectionMetricsFields.begin())];
    if (seen && duplicateKey_.empty()) duplicateKey_ = field->key;
    seen = true;
    lastKey_ = field->key;
  }

  std::array<bool, connectionMetricsFields.size()> seen_{};
  std::string_view lastKey_;
  std::string_view duplicateKey_;
  bool tooDeep_ = false;
};

std::unexpected<ConnectionMetricsJsonError> failure(Fault fault, std::string_view key = {}) {
  return std::unexpected(ConnectionMetricsJsonError{.fault = fault, .key = std::string(key)});
}

std::expected<Json, ConnectionMetricsJsonError> parseWatched(std::string_view text) {
  if (text.size() > longestConnectionMetricsJsonBytes) return failure(Fault::tooLong);
  ParseWatcher watcher;
  Json value = Json::parse(text.begin(), text.end(), std::ref(watcher), /*allow_exceptions=*/false);
  // The parser takes a zero byte for the end of the text and would not look at what stands behind.
  const bool endsEarly = text.find('\0') != std::string_view::npos;
  if (value.is_discarded() || endsEarly) return failure(Fault::notJson, watcher.lastKey());
  if (watcher.tooDeep()) return failure(Fault::tooDeep);
  if (!watcher.duplicateKey().empty()) return failure(Fault::duplicateKey, watcher.duplicateKey());
  return value;
}

std::string_view clauseOf(Fault fault) {
  switch (fault) {
    case Fault::tooLong:
      return "is too long";
    case Fault::notJson:
      return "stands before text that is not JSON";
    case Fault::tooDeep:
      return "is nested too deeply";
    case Fault::notAnObject:
      return "is not an object";
    case Fault::notAnArray:
      return "is not an array";
    case Fault::missingRecords:
      return "has no records behind it";
    case Fault::missingKey:
      return "is missing";
    case Fault::duplicateKey:
      return "stands twice";
    case Fault::notAnUnsignedInteger:
      return "is not an unsigned 64-bit integer";
    case Fault::unknownCase:
      return "is not a known case";
  }
  fatalError("the fault of a counter record's JSON is none of the known ones");
}

}  // namespace

std::string describe(const ConnectionMetricsJsonError& error) {
  if (error.fault == Fault::notJson && error.key.empty()) return "the document is not JSON";
  const std::string subject = error.key.empty() ? "the document" : '"' + error.key + '"';
  return subject + " " + std::string(clauseOf(error.fault));
}

std::string encodeConnectionMetrics(const ConnectionMetrics& metrics) {
  std::string text;
  appendConnectionMetricsJson(text, metrics);
  return text;
}

std::expected<ConnectionMetrics, ConnectionMetricsJsonError> decodeConnectionMetrics(
    std::string_view text) {
  if (const auto metrics = decodeWrittenConnectionMetrics(text)) return *metrics;
  const auto value = parseWatched(text);
  if (!value) return std::unexpected(value.error());
  return connectionMetricsFromJson(*value);
}

std::string encodeConnectionMetricsType(ConnectionMetricsType type) {
  return connectionMetricsTypeToJson(type).dump();
}

std::expected<ConnectionMetricsType, ConnectionMetricsJsonError> decodeConnectionMetricsType(
    std::string_view text) {
  const auto value = parseWatched(text);
  if (!value) return std::unexpected(value.error());
  return connectionMetricsTypeFromJson(*value);
}

}  // namespace lanternfold
