// The boot time ("kern.boottime"), a timeval of 16 bytes. Pure.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>

namespace lanternfold::darwin {

/// The moment of the boot. None when `value` is not exactly 16 bytes long, or names a moment that
/// lies further from 1970 than a time point reaches (292 years).
[[nodiscard]] std::optional<std::chrono::system_clock::time_point> decodeBootTime(
    std::span<const std::byte> value);

}  // namespace lanternfold::darwin
