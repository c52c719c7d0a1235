// What a widget says, as text for people.
#pragma once

#include <vector>

#include "ViewTree/PlainText.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// A line for each row, the first columns below each other. Control characters are shown as
/// escapes.
void writeWidgetRows(const std::vector<PlainTextRow>& rows, const Console& console);

}  // namespace lanternfold
