// Making texts fit to show: UTF-8 that is valid, one line, bounded; and shortening them to a width.
//
// Pure functions. Used by: the functions that make views, the layout.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "ViewTree/View.h"

namespace lanternfold {

/// No widget shows more characters of one text than this; what is longer ends in an ellipsis.
inline constexpr std::size_t maximumShownCharacters = 512;

/// `text` as one line of valid UTF-8: each byte that is part of no character becomes U+FFFD, each
/// control character or line separator a space, and directional overrides vanish, so that a name
/// from outside cannot turn round the texts beside it.
[[nodiscard]] std::string displayableText(std::string_view text);

/// The longest form of `text` whose width is at most `width`: the text itself, or as many of its
/// characters as go beside an ellipsis, or nothing. `text` is valid UTF-8; `widthOf` measures a
/// text and grows with its length.
[[nodiscard]] std::string shortenedText(std::string_view text, Truncation truncation, double width,
                                        const std::function<double(std::string_view)>& widthOf);

}  // namespace lanternfold
