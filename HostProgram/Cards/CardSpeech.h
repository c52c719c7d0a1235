// What a screen reader says of a card as a whole.
//
// Pure function. Used by: the cards' windows and the gallery's previews.
#pragma once

#include <string>

#include "ViewTree/View.h"

namespace lanternfold {

/// All rows that `card` has to say, from top to bottom: "Router 192.0.2.1/24, MAC …". Buttons and
/// links are said by themselves. At most `longestAccessibleDescription` bytes; rows that do not fit
/// are not said.
[[nodiscard]] std::string cardSpeech(const View& card, const std::string& drawingTime);

}  // namespace lanternfold
