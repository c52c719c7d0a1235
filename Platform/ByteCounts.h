// Byte counts in the user's language.
//
// Read by: whoever shows traffic to the user.
#pragma once

#include <string_view>

#include "Platform/StringTable.h"
#include "Support/ByteCountFormatter.h"

namespace lanternfold {

/// With the words and the numbers of `strings`, which outlives the formatter.
[[nodiscard]] inline ByteCountFormatter byteCountFormatter(ByteCountStyle style,
                                                           const StringTable& strings) {
  return {style, [&strings](std::string_view key) { return strings.localized(key); },
          [&strings](std::string_view digits) { return strings.localizedDecimal(digits); }};
}

}  // namespace lanternfold
