// What the user's language means to a picture.
//
// Read by: whatever draws a view or writes it as text. A view itself knows neither: its time of
// drawing is filled in, and its sides are chosen, when it is drawn.
#pragma once

#include <string>

#include "Support/UserLanguage.h"
#include "ViewTree/Geometry.h"
#include "Wiring/Machine.h"

namespace lanternfold {

/// "Today, 10:30 AM" in the user's language, region and time zone.
[[nodiscard]] std::string drawingTimeText(const Machine& machine);

/// The language's tag, "en" or "zh-CN", for the choice among the characters that languages share.
[[nodiscard]] std::string languageTag(const UserLanguage& language);

/// From right to left where the user's language is written so.
[[nodiscard]] LayoutDirection layoutDirection(const UserLanguage& language);

}  // namespace lanternfold
