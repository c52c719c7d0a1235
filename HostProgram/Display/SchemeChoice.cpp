#include "HostProgram/Display/SchemeChoice.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace lanternfold {
namespace {

/// Dark themes say so at their end: "Adwaita-dark", "Arc-Dark", "Adwaita:dark".
bool isDarkName(std::string_view name) {
  std::string lower(name);
  std::ranges::transform(lower, lower.begin(), [](unsigned char letter) {
    return static_cast<char>(std::tolower(letter));
  });
  return lower.ends_with("-dark") || lower.ends_with(":dark");
}

}  // namespace

ColourScheme chosenScheme(PreferredColourScheme preference, const ThemeFacts& theme) {
  switch (preference) {
    case PreferredColourScheme::dark:
      return ColourScheme::dark;
    case PreferredColourScheme::light:
      return ColourScheme::light;
    case PreferredColourScheme::noPreference:
      break;
  }
  return theme.prefersDark || isDarkName(theme.name) ? ColourScheme::dark : ColourScheme::light;
}

}  // namespace lanternfold
