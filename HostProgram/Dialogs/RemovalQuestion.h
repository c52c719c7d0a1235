// The question whether a widget is to go from the desktop.
//
// Pure. Used by: the host's windows.
#pragma once

#include "HostProgram/Dialogs/Question.h"
#include "Platform/StringTable.h"

namespace lanternfold {

/// `isLast`: the desktop is empty without it, and the user is told how to get others.
[[nodiscard]] Question removalQuestion(bool isLast, const StringTable& strings);

/// The number of the answer with which it goes.
inline constexpr std::size_t removingAnswer = 1;

}  // namespace lanternfold
