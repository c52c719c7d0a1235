// What the host itself shows in a widget's place, in the look of the widgets.
//
// Pure functions. Used by: the desk, while an extension's view is not there or is an old one.
#pragma once

#include "Platform/StringTable.h"
#include "ViewTree/View.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

/// The intent of the button on these cards, which is for the host and never reaches an extension.
inline constexpr const char* tryAgainIntent = "TryAgainHostIntent";

/// Before anything is known: the background alone.
[[nodiscard]] View emptyCard(const StringTable& strings);

/// Where nothing has been answered in time, and never was before: says so, and has a button that
/// asks anew.
[[nodiscard]] View unansweredCard(const StringTable& strings, WidgetFamily family);

/// While the extension is left alone: says so, and has a button that lets it be started again.
[[nodiscard]] View quietCard(const StringTable& strings, WidgetFamily family);

/// `content`, which fills a widget, made fainter and marked as one that is not up to date. It says
/// no time of drawing any more.
[[nodiscard]] View staleCard(View content, const StringTable& strings);

}  // namespace lanternfold
