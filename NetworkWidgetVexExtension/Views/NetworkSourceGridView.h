// The sources of a widget, laid out for the room it has.
#pragma once

#include <compare>
#include <cstddef>
#include <optional>
#include <vector>

#include "NetworkMonitor/Model/NetworkState.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct NetworkSourceGridView {
  /// Ordered by raw value.
  enum class DisplayMode { accessory = 0, small = 10, large = 20 };

  /// How many cards stand beside each other, and how many below.
  struct Shape {
    std::size_t columns = 1;
    std::size_t rows = 0;
  };

  std::vector<AnyNetworkSource> sources;
  DisplayMode displayMode = DisplayMode::small;
  bool hideBytesMeters = false;

  [[nodiscard]] View body(const WidgetEnvironment& environment) const;

  /// A large widget has one column. In others the third card opens a second column, and so the
  /// fifth one a third row.
  [[nodiscard]] Shape shape() const;

  /// The mode of `rawValue`; none for any other value.
  [[nodiscard]] static std::optional<DisplayMode> displayModeOf(int rawValue);
};

}  // namespace lanternfold
