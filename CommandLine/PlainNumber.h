// Numbers as a user may write them: plain decimal ones, and nothing else that a library would take
// (signs, spaces, exponents, hexadecimal digits).
//
// Read by: the commands, for the values of their options.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lanternfold {

/// Digits only; none for anything else and for what does not fit.
[[nodiscard]] std::optional<std::uint64_t> plainWholeNumber(std::string_view text);

/// Digits, perhaps a point and further digits, 32 characters at the most.
[[nodiscard]] std::optional<double> plainNumber(std::string_view text);

}  // namespace lanternfold
