// How a failure leaves a program.
#pragma once

#include <expected>
#include <functional>

#include "Wiring/Console.h"

namespace lanternfold {

/// One line among the errors, behind the program's name, unless somebody else has said it already
/// and the sentence is empty; the status to end with.
[[nodiscard]] ExitStatus reportFailure(const CommandFailure& failure, const char* program,
                                       const Console& console);

/// What has been written is a result only when it could be written (a full disk); whoever reads
/// only the beginning of it has what they wanted.
[[nodiscard]] ExitStatus finishWriting(const char* program, const Console& console);

/// Runs `work`. What the system lacks for it (descriptors, memory, threads) is a failure like any
/// other, with what to do.
[[nodiscard]] std::expected<void, CommandFailure> withSystemLacks(
    const std::function<std::expected<void, CommandFailure>()>& work);

}  // namespace lanternfold
