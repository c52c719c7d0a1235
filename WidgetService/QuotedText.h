// What a peer said, fit to stand in a sentence that is sent back to it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lanternfold {

/// What `text` begins with, up to the first character that goes beyond so many bytes. Of bytes that
/// are no UTF-8 each counts as a character.
[[nodiscard]] std::string_view beginningOf(std::string_view text, std::size_t longestBytes);

/// Bytes of `text` that a quotation shows at most.
inline constexpr std::size_t longestQuotedBytes = 64;

/// `text` in double quotes: its beginning, with an ellipsis when that is not all, and escaped
/// (Support/EscapedText.h). Any bytes; the result is UTF-8 of less than 300 bytes.
[[nodiscard]] std::string quotedText(std::string_view text);

}  // namespace lanternfold
