// The sizes widgets come in.
#pragma once

#include "Support/FatalError.h"
#include "ViewTree/Geometry.h"

namespace lanternfold {

enum class WidgetFamily { small, medium, large };

/// The rounding of every widget's corners, in points.
inline constexpr double widgetCornerRadius = 22;

/// A widget's size on the desktop, in points: two small ones beside each other, with the gap of 24
/// between them, are as wide as a medium one.
[[nodiscard]] constexpr Size widgetSize(WidgetFamily family) {
  switch (family) {
    case WidgetFamily::small:
      return {170, 170};
    case WidgetFamily::medium:
      return {364, 170};
    case WidgetFamily::large:
      return {364, 382};
  }
  fatalError("a widget family has no size");
}

}  // namespace lanternfold
