// What a peer said, fit to stand in a sentence that is sent back to it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lanternfold {

/// Bytes of `text` that a quotation shows at most.
inline constexpr std::size_t longestQuotedBytes = 64;

/// `text` in double quotes: cut before the first character that goes beyond `longestQuotedBytes`,
/// with an ellipsis then, and escaped (Support/EscapedText.h). Any bytes; the result is UTF-8 of
/// less than 300 bytes.
[[nodiscard]] std::string quotedText(std::string_view text);

}  // namespace lanternfold
