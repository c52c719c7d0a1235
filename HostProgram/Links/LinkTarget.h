// What a click on a link of a card leads to.
//
// Pure. Used by: `LinkOpener`.
#pragma once

#include <string_view>

namespace lanternfold {

/// This program's own desktop file, as the system names handlers.
inline constexpr std::string_view ownDesktopFile = "net.quernaple.LanternfoldX.Widgets.desktop";

enum class LinkTarget {
  nothing,              ///< not to be opened
  system,               ///< handed to the program that the system has for it
  ownBandwidthMonitor,  ///< nobody else handles the product's own scheme
};

/// `handler` is the desktop file of whom the system has for the scheme of the product's own links,
/// empty for nobody.
[[nodiscard]] LinkTarget linkTarget(std::string_view url, std::string_view handler);

}  // namespace lanternfold
