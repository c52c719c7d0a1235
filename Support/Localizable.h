// Marks keys of the string table that are looked up elsewhere than where they stand.
//
// Read by: `Scripts/translations`, which gathers the keys of the catalogues. A key is the literal
// argument of `localized`, or of this.
#pragma once

#include <string_view>

namespace lanternfold {

[[nodiscard]] consteval std::string_view localizable(std::string_view key) { return key; }

}  // namespace lanternfold
