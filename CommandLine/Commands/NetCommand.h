// `lanternfold-widgets net guess`, `validate` and `resolve`: what a text is that somebody types as
// a target, and which address a host has.
#pragma once

#include <expected>
#include <optional>

#include "CommandLine/InputText.h"
#include "NetBase/IPVersion.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

struct NetTextOptions {
  InputSource text;
  bool json = false;
};

/// Writes "ipv4", "ipv6" or "hostname"; a text that is none of them is a failure.
[[nodiscard]] std::expected<void, CommandFailure> runNetGuess(const NetTextOptions& options,
                                                              const Machine& machine,
                                                              const Console& console);

/// A text that cannot be a host's name is a failure.
[[nodiscard]] std::expected<void, CommandFailure> runNetValidate(const NetTextOptions& options,
                                                                 const Machine& machine,
                                                                 const Console& console);

/// Writes one address of the host, of `version` or of either. Asks as the system is configured to,
/// and waits for it; an interruption ends the program.
[[nodiscard]] std::expected<void, CommandFailure> runNetResolve(const NetTextOptions& options,
                                                                std::optional<IPVersion> version,
                                                                const Machine& machine,
                                                                const Console& console);

}  // namespace lanternfold
