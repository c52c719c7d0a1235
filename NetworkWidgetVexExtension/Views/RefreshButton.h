// The button that asks for a new entry, and its style.
#pragma once

#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

inline constexpr double refreshSymbolSize = 11;
inline constexpr double refreshSymbolPadding = 3;
inline constexpr double refreshButtonSide = refreshSymbolSize + 2 * refreshSymbolPadding;

/// The style of the refresh button.
struct RefreshButton {
  enum class State { resting, pressed };

  [[nodiscard]] View face(State state) const;
};

/// The button in the bottom leading corner of all the room there is; nothing where it does not fit
/// or the host cannot press it.
[[nodiscard]] View refreshButtonInCorner(const WidgetEnvironment& environment);

}  // namespace lanternfold
