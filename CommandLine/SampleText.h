// Samples of the counters as text for people, for `record`.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "CommandLine/RecordedSample.h"
#include "Platform/StringTable.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// Every interface with its counters; those of errors and collisions only where there are any.
void writeMetricsTable(const ConnectionMetricsMap& metrics, const StringTable& strings,
                       const Console& console);

/// A line, without its end: when, how busy the network was, when the next sample is due, and for
/// every adapter what has come and gone since `earlier`, with the rate. An adapter that was not in
/// `earlier`, or whose counters have started again, is shown with all that it has counted so far.
[[nodiscard]] std::string sampleLine(const RecordedSample& sample,
                                     const std::optional<RecordedSample>& earlier,
                                     const std::function<bool(std::string_view name)>& isAdapter,
                                     const StringTable& strings, TextStyle style);

}  // namespace lanternfold
