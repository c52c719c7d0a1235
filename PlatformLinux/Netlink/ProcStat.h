// The boot time in the text of /proc/stat.
//
// Made by: the kernel. Read by: `LinuxNetworkKernel`.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace lanternfold {

/// The moment of the line "btime SECONDS"; none without such a line or with another value than a
/// whole number of seconds that a time point can hold.
[[nodiscard]] std::optional<std::chrono::system_clock::time_point> bootTimeInProcStat(
    std::string_view text);

}  // namespace lanternfold
