// Samples of the counters as JSON, for `record --json`. One line without an end of line.
#pragma once

#include <string>

#include "CommandLine/RecordedSample.h"

namespace lanternfold {

/// {"en0":{the eight counters},…}, in the order of the names' bytes.
[[nodiscard]] std::string metricsMapJson(const ConnectionMetricsMap& metrics);

/// {"date":…,"bandwidthClass":…,"intervalSeconds":…,"metrics":{…}}
[[nodiscard]] std::string sampleJson(const RecordedSample& sample);

}  // namespace lanternfold
