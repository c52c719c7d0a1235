// What the sizes of widgets are called: by hosts and by people at a terminal.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

/// "small", "medium", "large"
[[nodiscard]] std::string_view widgetFamilyName(WidgetFamily family);

/// Those of `families` in their order, such as "small or medium".
[[nodiscard]] std::string widgetFamilyNames(const std::vector<WidgetFamily>& families);

/// None for any other text.
[[nodiscard]] std::optional<WidgetFamily> widgetFamilyOfName(std::string_view name);

}  // namespace lanternfold
