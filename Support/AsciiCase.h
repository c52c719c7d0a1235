// Case conversion of hexadecimal and other ASCII texts, the same in every locale.
//
// Used for hardware addresses, BSSIDs and IPv6 addresses. Bytes outside ASCII stay as they are, so
// text that is not what it should be comes out unharmed.
#pragma once

#include <string>
#include <string_view>

namespace lanternfold {

[[nodiscard]] std::string asciiLowercased(std::string_view text);
[[nodiscard]] std::string asciiUppercased(std::string_view text);

}  // namespace lanternfold
