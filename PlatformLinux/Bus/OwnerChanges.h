// Who has a name on the bus, and that somebody else has it now.
//
// Used by: whoever waits for a service that may come later. Internal to this room: it brings in
// GLib.
#pragma once

#include <string>

#include "PlatformLinux/Bus/MessageBus.h"

namespace lanternfold {

/// The new owner in the arguments of a `NameOwnerChanged`; empty when the name was given up, or in
/// arguments of another type.
[[nodiscard]] std::string newOwnerIn(GVariant* arguments);

/// Tells when the bus gives `name` to another owner, or to nobody.
[[nodiscard]] MessageBus::SignalMatch ownerChangesOf(const std::string& name);

}  // namespace lanternfold
