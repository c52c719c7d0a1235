// Moments as people at a terminal read them.
#pragma once

#include <chrono>
#include <string>

namespace lanternfold {

/// In the time zone of the environment, to the second: "2024-01-01 00:00:00".
[[nodiscard]] std::string localDateText(std::chrono::system_clock::time_point moment);

}  // namespace lanternfold
