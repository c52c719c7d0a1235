// The measures and fonts that the widgets' views share.
#pragma once

#include "ViewTree/TextMeasurer.h"
#include "ViewTree/View.h"

namespace lanternfold {

/// What surrounds a widget's content.
inline constexpr double contentPadding = 16;
/// How far the refresh button stands from the widget's corner.
inline constexpr double refreshButtonInset = 8;

inline constexpr Font smallFont{8, FontWeight::regular};
inline constexpr Font smallBoldFont{8, FontWeight::bold};
inline constexpr Font valueFont{13, FontWeight::regular};
/// The first row stands out by weight, never by size.
inline constexpr Font firstValueFont{13, FontWeight::bold};

/// The names of the colour pairs that the views use.
inline constexpr const char* gradientStartColour = "BackgroundGradientStart";
inline constexpr const char* gradientEndColour = "BackgroundGradientEnd";
inline constexpr const char* accentColour = "AccentColor";
inline constexpr const char* foregroundColour = "Foreground";
inline constexpr const char* labelColour = "LabelForeground";

/// The style of a widget's content: foreground colour and padding.
[[nodiscard]] View networkWidgetDefaultStyle(View content);

}  // namespace lanternfold
