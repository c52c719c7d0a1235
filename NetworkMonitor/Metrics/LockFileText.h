// What a lock file holds: the moment at which the lock lapses, as text.
//
// Seconds since 1 January 2001 00:00:00 UTC with eight decimals. Written and read by: `FileLock`.
// Pure: any thread, nothing thrown for bad input, the same in every locale.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace lanternfold {

/// Since 1 January 2001 00:00:00 UTC. A double tells moments of this century apart from 0.2
/// microseconds on; both sides of a comparison must have gone through it.
using SecondsSince2001 = std::chrono::duration<double>;

/// A lock's text is 18 bytes long; a longer file than this was written by something else.
inline constexpr std::size_t longestLockFileTextBytes = 4096;

[[nodiscard]] SecondsSince2001 secondsSince2001(std::chrono::system_clock::time_point date);

/// As in "725846400.50000000".
[[nodiscard]] std::string encodeLockFileText(std::chrono::system_clock::time_point expiry);

/// The time that a decimal number names: an optional sign, digits, a point with digits behind it or
/// none, an exponent or none, and nothing else, neither spaces nor a line end. A number beyond the
/// range of a double is the largest one of its sign. None for any other text.
[[nodiscard]] std::optional<SecondsSince2001> decodeLockFileText(std::string_view text);

}  // namespace lanternfold
