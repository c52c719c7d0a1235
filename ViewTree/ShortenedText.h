// Shortening texts and breaking them into lines.
//
// Pure functions. Used by: the layout.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ViewTree/View.h"

namespace lanternfold {

/// Measures a text, and grows with its length.
using TextWidth = std::function<double(std::string_view)>;

/// The longest form of `text` whose width is at most `width`: the text itself, or as many of its
/// characters as go beside an ellipsis, or nothing. `text` is valid UTF-8.
[[nodiscard]] std::string shortenedText(std::string_view text, Truncation truncation, double width,
                                        const TextWidth& widthOf);

struct WrappedLine {
  std::size_t start = 0;  ///< where it begins in the text, in bytes
  std::string text;
  friend bool operator==(const WrappedLine&, const WrappedLine&) = default;
};

/// `text` on at most `lineLimit` lines, at least one, none wider than `width`. Each line but the
/// last takes as much as it holds up to a place where a new line may begin, or up to any character
/// where there is no such place; the last one takes the rest, shortened where it must be. Spaces at
/// the end of a line are not shown.
[[nodiscard]] std::vector<WrappedLine> wrappedText(std::string_view text, Truncation truncation,
                                                   double width, std::size_t lineLimit,
                                                   const TextWidth& widthOf);

}  // namespace lanternfold
