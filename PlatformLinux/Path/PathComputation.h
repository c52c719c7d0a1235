// From the kernel's tables to the path out of the machine.
//
// Read by: the path monitor.
#pragma once

#include <optional>

#include "Platform/NetworkPath.h"
#include "PlatformLinux/Path/NetworkSnapshot.h"

namespace lanternfold {

/// Satisfied when a default route leads over an interface that is up and running. Default routes
/// rank by metric, then IPv4 before IPv6, then in dump order; an interface has the rank of its
/// best. With a required type, interfaces of other types do not exist.
[[nodiscard]] NetworkPath pathFrom(const NetworkSnapshot& snapshot,
                                   std::optional<PathInterfaceType> requiredType);

}  // namespace lanternfold
