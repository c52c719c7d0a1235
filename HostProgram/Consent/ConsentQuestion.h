// The question whether Wi-Fi names may be shown.
//
// Pure. Used by: the host's windows.
#pragma once

#include "HostProgram/Dialogs/Question.h"
#include "Platform/StringTable.h"
#include "PlatformLinux/Location/ConsentText.h"

namespace lanternfold {

[[nodiscard]] Question consentQuestion(const StringTable& strings);

/// Of the answer's number; a number that is none decides nothing.
[[nodiscard]] ConsentDecision consentOfAnswer(std::size_t answer);

}  // namespace lanternfold
