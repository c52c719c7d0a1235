// How figures are written in text dumps.
#pragma once

#include <optional>
#include <string>

#include "ViewTree/Colour.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/TextMeasurer.h"

namespace lanternfold {

/// Rounded to a tenth, without a trailing ".0"; "unlimited" for a length without a bound.
[[nodiscard]] std::string dumped(double length);
/// "x,y widthxheight".
[[nodiscard]] std::string dumped(const Rect& frame);
/// "#RRGGBBAA".
[[nodiscard]] std::string dumped(const Rgba& colour);
/// The name of the pair or the value, with the opacity when it is not 1.
[[nodiscard]] std::string dumped(const Colour& colour);
/// "13 bold tight".
[[nodiscard]] std::string dumped(const Font& font);
/// " strength 0.5"; nothing of a symbol that shows none.
[[nodiscard]] std::string dumpedStrength(const std::optional<double>& strength);
/// In double quotes; quotes and backslashes within are escaped.
[[nodiscard]] std::string quoted(const std::string& text);

}  // namespace lanternfold
