#include "CommandLine/SampleJson.h"

#include <cmath>
#include <cstdint>

#include <nlohmann/json.hpp>

#include "NetworkMonitor/Metrics/ConnectionMetricsJsonValue.h"
#include "Support/Rfc3339Text.h"

namespace lanternfold {
namespace {

using Json = nlohmann::ordered_json;

Json toJson(const ConnectionMetricsMap& metrics) {
  Json object = Json::object();
  for (std::size_t position = 0; position < metrics.size(); ++position) {
    object[metrics.name(position)] = connectionMetricsToJson(metrics.value(position));
  }
  return object;
}

/// Whole seconds without a fraction: 120, not 120.0.
Json secondsToJson(double seconds) {
  const double whole = std::trunc(seconds);
  return whole == seconds ? Json(static_cast<std::int64_t>(whole)) : Json(seconds);
}

std::string textOf(const Json& value) {
  return value.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

}  // namespace

std::string metricsMapJson(const ConnectionMetricsMap& metrics) { return textOf(toJson(metrics)); }

std::string sampleJson(const RecordedSample& sample) {
  return textOf({{"date", rfc3339Text(sample.date)},
                 {"bandwidthClass", nameOf(sample.bandwidthClass)},
                 {"intervalSeconds", secondsToJson(sample.intervalSeconds)},
                 {"metrics", toJson(sample.metrics)}});
}

}  // namespace lanternfold
