// What the host reads of its environment.
//
// Called by: the host's composition, before any thread is started.
#pragma once

#include <optional>
#include <string>

#include "HostProgram/Display/DisplayChoice.h"

namespace lanternfold {

/// The displays that this process is told of.
[[nodiscard]] DisplayEnvironment displayEnvironmentOfProcess();

/// The login manager's name of the session that this process was started in; empty where it is told
/// of none.
[[nodiscard]] std::string loginSessionOfProcess();

}  // namespace lanternfold
