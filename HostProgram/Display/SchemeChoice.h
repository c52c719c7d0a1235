// Light or dark.
//
// Pure. Used by: `SchemeWatch`, whenever the desktop says something of it.
#pragma once

#include <string_view>

#include "Platform/DesktopAppearance.h"
#include "ViewTree/Colour.h"

namespace lanternfold {

/// What the toolkit's theme says, for desktops that have no word for a preference.
struct ThemeFacts {
  std::string_view name;  ///< such as "Adwaita-dark"
  bool prefersDark = false;
};

[[nodiscard]] ColourScheme chosenScheme(PreferredColourScheme preference, const ThemeFacts& theme);

}  // namespace lanternfold
