// Characters in UTF-8, where only their bounds matter. What a reader sees as one character may be
// several of them: Support/TextBreaks.h.
//
// Pure functions, any thread. Used by: whoever bounds texts or counts what they are written in.
#pragma once

#include <cstddef>
#include <string_view>

namespace lanternfold {

/// The beginning of `text` that is at most `longest` bytes long and does not end within a
/// character. Of bytes that are no UTF-8 it may be shorter by more than a character.
[[nodiscard]] std::string_view cutBetweenCharacters(std::string_view text, std::size_t longest);

/// How many characters begin in `text`.
[[nodiscard]] std::size_t characterCount(std::string_view text);

}  // namespace lanternfold
