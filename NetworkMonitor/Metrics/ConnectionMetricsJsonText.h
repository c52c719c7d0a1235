// Counter records as JSON text, without a tree of values in between.
//
// Read by: the encoders and decoders of the counter record and of the storages' file. The storage
// in user defaults decodes and encodes every record at every registration, millions in a sampling
// step of a thousand interfaces.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"

namespace lanternfold {

/// Appends the object of the eight fields.
void appendConnectionMetricsJson(std::string& text, const ConnectionMetrics& metrics);

/// The record of a text that is exactly as `appendConnectionMetricsJson` writes it. None for any
/// other, which may be JSON of a record all the same.
[[nodiscard]] std::optional<ConnectionMetrics> decodeWrittenConnectionMetrics(
    std::string_view text);

/// Appends `value` as a JSON string; false, with nothing appended, when it is not UTF-8.
[[nodiscard]] bool appendJsonString(std::string& text, std::string_view value);

}  // namespace lanternfold
