// The counters in the text of /proc/net/dev.
//
// Made by: the kernel. Read by: `ProcNetDevCounterSource`, the last resort where netlink is
// refused.
#pragma once

#include <expected>
#include <string>
#include <string_view>
#include <vector>

#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/LinkCounters.h"

namespace lanternfold {

struct ProcNetDevLine {
  std::string name;
  LinkCounters64 counters;
  friend bool operator==(const ProcNetDevLine&, const ProcNetDevLine&) = default;
};

/// Every interface in the order of the text: after two heading lines, "NAME: " and sixteen numbers
/// a line. A line whose name is not to be trusted is left out. Errors: truncated "heading" (fewer
/// than two lines), missing "name" (a line without a colon), missing "counter" (fewer than sixteen
/// numbers), badValue "counter" (not a number of 64 bits).
[[nodiscard]] std::expected<std::vector<ProcNetDevLine>, DecodeError> parseProcNetDev(
    std::string_view text);

}  // namespace lanternfold
