// A question or message to the user, as a value.
//
// Made by: whoever asks. Read by: `Dialogs`.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace lanternfold {

/// All texts are plain, never markup.
struct Question {
  std::string title;
  std::string text;
  std::string explanation;
  std::vector<std::string> answers;  ///< at least one, in the order of the buttons
  std::size_t defaultAnswer = 0;     ///< that of the Enter key
};

}  // namespace lanternfold
