// The colours of the widgets, a light and a dark value each, as a file of the assets says them:
//
//   {"Foreground": {"light": "#FFFFFF", "dark": "#F2F5FA"}, ...}
//
// Read by: whoever draws. Rule: the foreground on the gradient and on the logo, and the label's
// text on the label's background, are easy to read everywhere and in both schemes; a test measures
// the contrast.
#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "ViewTree/Colour.h"

namespace lanternfold {

/// The file's name in the folder of the assets.
inline constexpr const char* colourFileName = "Colours.json";

/// The pairs of a colour file; its members may have any name, and a pair no other members than
/// these two. The error says in a few words what is wrong, and where.
[[nodiscard]] std::expected<ColourPalette, std::string> coloursOf(std::string_view json);

/// Greys for the names that the widgets use, with which everything can be read.
[[nodiscard]] ColourPalette standInColours();

/// The colours of `folder`. Where the file is missing, broken or lacks one that the widgets use,
/// greys stand in, and `report` is told in one line.
[[nodiscard]] ColourPalette readColours(const std::filesystem::path& folder,
                                        const std::function<void(std::string_view)>& report);

}  // namespace lanternfold
