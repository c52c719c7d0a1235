// What a link to the bandwidth monitor asks for.
//
// Pure function. Used by: the host's own monitor.
#pragma once

#include <string_view>

namespace lanternfold {

/// Whether it is to be as small as it can be: the query says "mini=1".
[[nodiscard]] bool asksForMiniMonitor(std::string_view url);

}  // namespace lanternfold
