// Brings the toolkit up on the chosen display.
#pragma once

#include <expected>

#include "HostProgram/Display/DisplayChoice.h"
#include "Platform/DiagnosticLog.h"
#include "Support/UserLanguage.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// Once, first of all that the toolkit does. What it has to complain of goes to `log`, which lives
/// as long as the program; so does that the display has gone, upon which the toolkit ends the
/// program with status 1.
[[nodiscard]] std::expected<void, CommandFailure> setUpToolkit(WindowKind kind,
                                                               const UserLanguage& language,
                                                               DiagnosticLog& log);

}  // namespace lanternfold
