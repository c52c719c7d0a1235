// How long a widget stays as it is when nothing happens: the option that the host takes, and
// whoever starts it.
#pragma once

#include <chrono>
#include <expected>
#include <string_view>

#include "Wiring/Console.h"

namespace lanternfold {

/// What `--refresh-interval` takes.
inline constexpr const char* refreshIntervalValues = "a whole number of seconds from 10 to 86400";

inline constexpr std::chrono::seconds defaultRefreshInterval = std::chrono::minutes(5);

/// The value of `--refresh-interval`.
[[nodiscard]] std::expected<std::chrono::seconds, CommandFailure> parseRefreshInterval(
    std::string_view text);

}  // namespace lanternfold
