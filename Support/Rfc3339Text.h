// Moments as machines read them.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace lanternfold {

/// RFC 3339 in UTC, to the millisecond (cut, not rounded): "2024-01-01T00:00:00.000Z".
[[nodiscard]] std::string rfc3339Text(std::chrono::system_clock::time_point moment);

/// The moment of a text of RFC 3339, in any time zone and with up to nine digits of a second. None
/// for any other text, for a second that was put in, and for moments before 1970 and after 2261 in
/// UTC, some of which no clock here reaches.
[[nodiscard]] std::optional<std::chrono::system_clock::time_point> momentOfRfc3339Text(
    std::string_view text);

}  // namespace lanternfold
