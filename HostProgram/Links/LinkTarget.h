// What a link leads to.
//
// Pure. Used by: `LinkOpener`.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace lanternfold {

/// This program's own desktop file, as the system names handlers.
inline constexpr std::string_view ownDesktopFile = "net.quernaple.LanternfoldX.Widgets.desktop";

enum class LinkTarget {
  nothing,              ///< not to be opened
  system,               ///< handed to the program that the system has for it
  ownBandwidthMonitor,  ///< nobody else handles the product's own scheme
};

/// Whom the system has for the scheme of the product's own links.
struct LinkHandler {
  std::string desktopFile;        ///< empty for nobody
  std::filesystem::path program;  ///< that it starts, with every link followed; empty if unknown
};

/// Whether that is this program, whose path is `ownProgram`, also by a copy of its desktop file
/// under another name: a link that is handed to it would only come back.
[[nodiscard]] bool isThisProgram(const LinkHandler& handler,
                                 const std::filesystem::path& ownProgram);

/// Of a link of a card. `isHandledElsewhere` says whether another program than this one handles the
/// product's own scheme.
[[nodiscard]] LinkTarget linkTarget(std::string_view url, bool isHandledElsewhere);

/// Of a link that somebody outside has handed to this program. It never goes out again, whoever
/// handles it: two programs could hand it to each other without end. Nor is this a way to have
/// pages opened.
[[nodiscard]] LinkTarget linkTargetFromOutside(std::string_view url);

}  // namespace lanternfold
