// Laid-out views and draw lists as text, a line a node: what golden tests compare and what a
// developer reads. Lengths are rounded to a tenth of a point.
#pragma once

#include <string>

#include "ViewTree/DrawList.h"
#include "ViewTree/Layout.h"

namespace lanternfold {

/// Each line: indentation by depth, kind, "x,y widthxheight", the node's own figures, the lines of
/// a text in quotes, and the accessible description after "--" where it differs from the text.
[[nodiscard]] std::string textDump(const LaidOutView& view);

/// Each line: kind, place, colours as #RRGGBBAA, figures, text; what a clip cuts stands indented.
[[nodiscard]] std::string textDump(const DrawList& list);

}  // namespace lanternfold
