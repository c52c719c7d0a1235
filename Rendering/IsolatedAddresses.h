// Keeps addresses in one piece among letters that run from right to left.
#pragma once

#include <string>
#include <string_view>

namespace lanternfold {

/// `text` with directional isolates (U+2066, U+2069) around each word that is made of hexadecimal
/// digits and colons, as "2001:db8::1" and "ab:cd:ef:12:34:56" are: beside Arabic or Hebrew letters
/// their parts would change places. A text without such letters comes back as it is.
[[nodiscard]] std::string isolatedAddresses(std::string_view text);

}  // namespace lanternfold
