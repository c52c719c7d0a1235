// The binary hardware database (hwdb.bin) of one device, as udev's compiler would write it.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace lanternfold {

/// A database that knows one device: everything whose modalias begins with `prefix` has these
/// properties.
[[nodiscard]] std::string hardwareDatabaseFile(
    const std::string& prefix, const std::map<std::string, std::string>& properties);

}  // namespace lanternfold
