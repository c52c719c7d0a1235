// Which links of a card a click may open.
//
// Pure functions. Used by: the desktop's windows, before anything is handed to the system.
#pragma once

#include <string_view>

namespace lanternfold {

/// The scheme of the links that a main application handles.
inline constexpr std::string_view deepLinkScheme = "net.quernaple.LanternfoldX";

enum class LinkVerdict {
  refused,
  webPage,   ///< a page over https, which a browser may be given
  deepLink,  ///< of the product's own scheme
};

/// Any bytes. A page is one of https with a host and without a user's name, which would make one
/// host read as another; everything that is neither this nor a deep link is refused.
[[nodiscard]] LinkVerdict linkVerdict(std::string_view url);

/// Whether a deep link leads to the bandwidth monitor, whatever its query says.
[[nodiscard]] bool isBandwidthMonitorLink(std::string_view url);

}  // namespace lanternfold
