// Making texts fit to show: UTF-8 that is valid, one line, bounded.
//
// Pure functions. Used by: the functions that make views, the archive.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lanternfold {

/// No widget shows more characters of one text than this; what is longer ends in an ellipsis.
inline constexpr std::size_t maximumShownCharacters = 512;

/// `text` as one line of valid UTF-8: each byte that is part of no character becomes U+FFFD, each
/// control character or line separator a space, and directional overrides vanish, so that a name
/// from outside cannot turn round the texts beside it.
[[nodiscard]] std::string displayableText(std::string_view text);

}  // namespace lanternfold
