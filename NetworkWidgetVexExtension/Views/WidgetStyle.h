// The measures, fonts and colours that the widgets' views share.
#pragma once

#include <vector>

#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/TextMeasurer.h"
#include "ViewTree/View.h"

namespace lanternfold {

/// How far the refresh button stands from the widget's corner.
inline constexpr double refreshButtonInset = 8;

inline constexpr Font smallFont{8, FontWeight::regular};
inline constexpr Font smallBoldFont{8, FontWeight::bold};
/// How far a value may shrink before it is shortened; of an address, which is of little use without
/// its middle, the font may be as small as the smallest there is.
inline constexpr double smallestValueScale = 0.75;
inline constexpr double smallestAddressSize = smallFont.size;

/// The names of the colour pairs that the views use.
inline constexpr const char* gradientStartColour = "BackgroundGradientStart";
inline constexpr const char* gradientEndColour = "BackgroundGradientEnd";
inline constexpr const char* accentColour = "AccentColor";
inline constexpr const char* foregroundColour = "Foreground";
inline constexpr const char* labelColour = "LabelForeground";

/// The style of a widget's content, as its family and its corner allow.
struct NetworkWidgetDefaultStyle {
  EdgeInsets padding;
  Font valueFont;
  /// The first row stands out by weight, never by size.
  Font firstValueFont;

  explicit NetworkWidgetDefaultStyle(const WidgetEnvironment& environment);

  /// Of a row with its label, in points.
  [[nodiscard]] double rowHeight() const;

  /// `content` in the style's padding and foreground colour.
  [[nodiscard]] View body(View content) const;
};

}  // namespace lanternfold
