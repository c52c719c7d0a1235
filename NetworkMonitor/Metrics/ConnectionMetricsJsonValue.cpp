#include "NetworkMonitor/Metrics/ConnectionMetricsJsonValue.h"

#include <cstdint>
#include <string>

#include <nlohmann/json.hpp>

#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"

namespace lanternfold {
namespace {

using Fault = ConnectionMetricsJsonError::Fault;

std::string joined(std::string_view enclosingKey, std::string_view key) {
  std::string path(enclosingKey);
  if (!enclosingKey.empty() && !key.empty()) path += '/';
  return path.append(key);
}

}  // namespace

nlohmann::ordered_json connectionMetricsToJson(const ConnectionMetrics& metrics) {
  auto value = nlohmann::ordered_json::object();
  for (const auto& field : connectionMetricsFields) {
    value.emplace(std::string(field.key), metrics.*field.member);
  }
  return value;
}

std::expected<ConnectionMetrics, ConnectionMetricsJsonError> connectionMetricsFromJson(
    const nlohmann::ordered_json& value, std::string_view enclosingKey) {
  const auto failure = [enclosingKey](Fault fault, std::string_view key) {
    return std::unexpected(
        ConnectionMetricsJsonError{.fault = fault, .key = joined(enclosingKey, key)});
  };
  if (!value.is_object()) return failure(Fault::notAnObject, "");
  ConnectionMetrics metrics;
  for (const auto& field : connectionMetricsFields) {
    const auto member = value.find(std::string(field.key));
    if (member == value.end()) return failure(Fault::missingKey, field.key);
    // Whatever was written with a sign, a fraction or an exponent, or does not fit, was parsed to
    // another kind of number, even if its value is a whole one.
    if (!member->is_number_unsigned()) return failure(Fault::notAnUnsignedInteger, field.key);
    metrics.*field.member = member->get<std::uint64_t>();
  }
  return metrics;
}

nlohmann::ordered_json connectionMetricsTypeToJson(ConnectionMetricsType type) {
  return static_cast<std::int64_t>(type);
}

std::expected<ConnectionMetricsType, ConnectionMetricsJsonError> connectionMetricsTypeFromJson(
    const nlohmann::ordered_json& value, std::string_view enclosingKey) {
  if (value.is_number_integer()) {
    // An unsigned number beyond the signed range turns negative here, and no case is negative.
    const auto type = connectionMetricsType(value.get<std::int64_t>());
    if (type) return *type;
  }
  return std::unexpected(
      ConnectionMetricsJsonError{.fault = Fault::unknownCase, .key = std::string(enclosingKey)});
}

}  // namespace lanternfold
