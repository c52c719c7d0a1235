// Moments as machines and as people at a terminal read them.
#pragma once

#include <chrono>
#include <string>

namespace lanternfold {

/// RFC 3339 in UTC, to the millisecond (cut, not rounded): "2024-01-01T00:00:00.000Z".
[[nodiscard]] std::string rfc3339Text(std::chrono::system_clock::time_point moment);

/// In the time zone of the environment, to the second: "2024-01-01 00:00:00".
[[nodiscard]] std::string localDateText(std::chrono::system_clock::time_point moment);

}  // namespace lanternfold
