// Whether a kernel's report says something that the last look at the tables did not.
//
// Read by: the path monitor.
#pragma once

#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/Path/NetworkSnapshot.h"

namespace lanternfold {

/// True for every change of a link, an address or a default route against `known`, and for a report
/// that cannot be decoded.
///
/// False for what is no change: a wireless event, a report of a bridge about its ports, a route
/// other than a default one, and a report that repeats what is known (a router's advertisement
/// renews an address every few minutes). A report older than the look that `known` was made by may
/// be taken for news; one that is news is never missed.
[[nodiscard]] bool isNews(const NetlinkMessage& message, const NetworkSnapshot& known);

}  // namespace lanternfold
