// Fills localised formats such as "Connected via %@".
//
// A format comes from a translation, so nothing but "%@" has a meaning in it: any other percent
// sign is a character like every other, and a format with a missing or extra placeholder is never
// an error.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace lanternfold {

/// `format` with its first "%@" replaced by the first argument, the second by the second and so on.
/// Placeholders beyond the last argument stay as they stand; arguments are not looked into.
[[nodiscard]] std::string fillPlaceholders(std::string_view format,
                                           std::initializer_list<std::string_view> arguments);

}  // namespace lanternfold
