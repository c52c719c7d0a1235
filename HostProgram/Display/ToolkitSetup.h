// Brings the toolkit up on the chosen display.
#pragma once

#include <expected>
#include <memory>

#include "HostProgram/Display/DisplayChoice.h"
#include "Platform/DiagnosticLog.h"
#include "Support/UserLanguage.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// Once: what the toolkit and its libraries have to complain of goes to `log` from now on, until
/// the process is gone. They have threads that outlive `main`, and so the log does too.
void sendToolkitsLinesTo(std::shared_ptr<DiagnosticLog> log);

/// Once, first of all that the toolkit does. What it has to complain of goes to `log`; so does that
/// the display has gone, upon which the toolkit ends the program with status 1.
[[nodiscard]] std::expected<void, CommandFailure> setUpToolkit(WindowKind kind,
                                                               const UserLanguage& language,
                                                               std::shared_ptr<DiagnosticLog> log);

}  // namespace lanternfold
