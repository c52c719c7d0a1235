// What the sizes of widgets are called.
//
// Used by: menus and galleries, in a window or on a sheet.
#pragma once

#include <string>

#include "Platform/StringTable.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

/// "Small", "Medium" or "Large" in the user's language.
[[nodiscard]] std::string widgetFamilyTitle(WidgetFamily family, const StringTable& strings);

}  // namespace lanternfold
