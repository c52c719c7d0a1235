// A sentence on as many lines as it needs: what a widget explains must be read whole.
#pragma once

#include <string>
#include <string_view>

#include "ViewTree/Elements.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct SentenceView {
  std::string sentence;
  TextStyle style;

  /// On one line if it fits, else on the fewest that do, broken between words into lines of about
  /// the same length; on the most there are, shortened, if none does.
  [[nodiscard]] View body() const;
};

/// Whether `value` is so long and of so many words that it is a sentence and no name.
[[nodiscard]] bool isSentence(std::string_view value);

}  // namespace lanternfold
