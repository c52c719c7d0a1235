// The question whether a widget is to go from the desktop.
//
// Pure. Used by: the host's windows.
#pragma once

#include <string>

#include "HostProgram/Dialogs/Question.h"
#include "Platform/StringTable.h"

namespace lanternfold {

struct RemovalFacts {
  std::string widget;   ///< which it is, in the user's language
  bool isLast = false;  ///< the desktop is empty without it; the user is told how to get others
};

[[nodiscard]] Question removalQuestion(const RemovalFacts& facts, const StringTable& strings);

/// The number of the answer with which it goes.
inline constexpr std::size_t removingAnswer = 1;

}  // namespace lanternfold
