// The widgets of a desktop as JSON, for scripts.
#pragma once

#include <span>
#include <string>

#include "WidgetHost/Store/PlacedWidget.h"

namespace lanternfold {

/// An array of {"id","kind","family","configuration","monitor","x","y"}, in the order given. The
/// configuration holds what was chosen: "showTimestamp", and "adapter" with "identifier" and
/// "display". Text that is not UTF-8 comes out with U+FFFD in the place of what is wrong.
[[nodiscard]] std::string placedWidgetsJson(std::span<const PlacedWidget> widgets);

}  // namespace lanternfold
