// The records as JSON, for `interfaces --json` and `state --json`.
//
// Members are the records' field names in field order, enumerations their case names, absent
// optionals null, counters numbers. Everything is one line without an end of line, so that a
// watcher can print an object a line. Text from outside that is not UTF-8 comes out with U+FFFD in
// the place of what is wrong; nothing here fails.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "NetworkMonitor/Model/NetworkState.h"

namespace lanternfold {

/// An array of adapter records, in the order given.
[[nodiscard]] std::string interfacesJson(std::span<const BasicInterface> interfaces);

/// {"complete":…,"state":{…}}; categories that were not asked for are null, `others` an empty list.
/// With `wifi`, which is JSON, {"complete":…,"state":{…},"wifi":…}.
[[nodiscard]] std::string stateJson(const NetworkState& state, NetworkSourceCategory asked,
                                    bool complete,
                                    const std::optional<std::string>& wifi = std::nullopt);

}  // namespace lanternfold
