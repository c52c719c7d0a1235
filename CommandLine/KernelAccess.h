// Tells an empty machine from one whose kernel does not answer. The library leaves out what it
// cannot read; a person at a terminal is owed the difference.
#pragma once

#include <expected>

#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

/// Nothing when the kernel's interface and counter tables can be read; else a failure that says
/// what to do.
[[nodiscard]] std::expected<void, CommandFailure> requireReadableKernel(const Machine& machine);

/// That the Wi-Fi cannot be read, and what to do.
[[nodiscard]] CommandFailure unreadableWifi(NetworkKernelError error);

/// A line among the errors: what is shown lacks the Wi-Fi because of `failure`.
void sayWifiIsLeftOut(const CommandFailure& failure, const Console& console);

/// The same for a state without Wi-Fi: nothing when there is none indeed.
[[nodiscard]] std::expected<void, CommandFailure> requireReadableWifi(const Machine& machine);

}  // namespace lanternfold
