// What the sizes of widgets are called: by hosts and by people at a terminal.
#pragma once

#include <optional>
#include <string_view>

#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

/// "small", "medium", "large"
[[nodiscard]] std::string_view widgetFamilyName(WidgetFamily family);

/// None for any other text.
[[nodiscard]] std::optional<WidgetFamily> widgetFamilyOfName(std::string_view name);

}  // namespace lanternfold
