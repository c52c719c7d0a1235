// The JSON form of the counter record inside other documents.
//
// Read by: whoever writes or reads a document that holds counter records. The rules are those of
// ConnectionMetricsJson.h, except that a parsed object no longer shows whether a key stood twice.
// `enclosingKey` is where in its document a value stands, such as "en0"; errors name it.
#pragma once

#include <expected>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"

namespace lanternfold {

[[nodiscard]] nlohmann::ordered_json connectionMetricsToJson(const ConnectionMetrics& metrics);
[[nodiscard]] std::expected<ConnectionMetrics, ConnectionMetricsJsonError>
connectionMetricsFromJson(const nlohmann::ordered_json& value, std::string_view enclosingKey = {});

[[nodiscard]] nlohmann::ordered_json connectionMetricsTypeToJson(ConnectionMetricsType type);
[[nodiscard]] std::expected<ConnectionMetricsType, ConnectionMetricsJsonError>
connectionMetricsTypeFromJson(const nlohmann::ordered_json& value,
                              std::string_view enclosingKey = {});

}  // namespace lanternfold
