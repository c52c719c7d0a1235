// Writing counter records as JSON text, without a tree of values in between.
//
// Read by: the encoders of the counter record and of the storages' file, which must keep pace with
// the JSON library when they write thousands of records.
#pragma once

#include <string>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"

namespace lanternfold {

/// Appends the object of the eight fields.
void appendConnectionMetricsJson(std::string& text, const ConnectionMetrics& metrics);

/// Appends `value` as a JSON string; false, with nothing appended, when it is not UTF-8.
[[nodiscard]] bool appendJsonString(std::string& text, std::string_view value);

}  // namespace lanternfold
