// Reading an IPv4 address with a scope ("127.0.0.1%eth0").
//
// Read by: the adapter list.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lanternfold {

/// The interface name after "%": the text must be four decimal numbers of 0 to 255 with full stops,
/// one "%" and a name that a link can have (1 to 15 bytes, neither space nor "/" nor "%", not "."
/// or ".."). None for anything else.
[[nodiscard]] std::optional<std::string> interfaceOfScopedAddress(std::string_view text);

}  // namespace lanternfold
