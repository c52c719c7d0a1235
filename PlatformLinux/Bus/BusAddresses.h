// Where the message buses are.
//
// Read by: the composition of each program.
#pragma once

#include <optional>
#include <string>

namespace lanternfold {

/// The address of this user's session bus, as the environment names it.
[[nodiscard]] std::optional<std::string> sessionBusAddress();

/// The address of the system's bus, which need not be there.
[[nodiscard]] std::string systemBusAddress();

}  // namespace lanternfold
