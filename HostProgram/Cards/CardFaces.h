// What of a card can be pressed, as a toolkit needs to know it.
//
// Pure function. Used by: the cards' windows, which lay a button of the toolkit over each.
#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "ViewTree/Layout.h"

namespace lanternfold {

/// A button or link of a card in its place.
struct CardFace {
  std::variant<ButtonNode, LinkNode> action;
  Rect frame;        ///< inside of the card, not empty
  std::string name;  ///< what a screen reader says
  friend bool operator==(const CardFace&, const CardFace&) = default;
};

/// No card of the product has more than two. What comes from outside may have thousands, of which
/// each would cost a window of the display's.
inline constexpr std::size_t mostCardFaces = 32;

/// In the order of drawing, so that of two above each other the later one is hit: those of `card`,
/// which is a whole laid-out card, as far as they can be seen.
[[nodiscard]] std::vector<CardFace> cardFaces(const LaidOutView& card, Size cardSize);

}  // namespace lanternfold
