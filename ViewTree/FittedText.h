// A text made to fit a place: broken into lines where it may be, else its font shrunk as far as it
// may; then the text shortened.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ViewTree/View.h"

namespace lanternfold {

struct FittedLine {
  std::string text;
  double width = 0;
};

struct FittedText {
  std::string text;               ///< as far as it is shown
  std::vector<FittedLine> lines;  ///< the same from the top, at least one
  Font font;
  /// As wide as the widest line, and so many lines high: a line is always as high as the whole text
  /// in its own font, so that rows stay where they are when a text shrinks or loses characters.
  Size size;
  double firstBaseline = 0;  ///< below the top
};

/// An absent length asks for what the text takes by itself. There are never more lines than have
/// room in the height that is offered, but at least one.
[[nodiscard]] FittedText fittedText(const TextNode& node, const ProposedSize& offer,
                                    const TextMeasurer& measurer);

}  // namespace lanternfold
