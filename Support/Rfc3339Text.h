// Moments as machines read them.
#pragma once

#include <chrono>
#include <string>

namespace lanternfold {

/// RFC 3339 in UTC, to the millisecond (cut, not rounded): "2024-01-01T00:00:00.000Z".
[[nodiscard]] std::string rfc3339Text(std::chrono::system_clock::time_point moment);

}  // namespace lanternfold
