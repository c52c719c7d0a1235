// A source as a card: its icon, its rows and, where wanted, its byte meters.
#pragma once

#include <cstddef>

#include "NetworkMonitor/Model/NetworkState.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct NetworkSourceView {
  enum class Direction { vertical, horizontal };

  Direction direction = Direction::horizontal;
  AnyNetworkSource source;
  std::size_t rowLimit = 0;
  bool showBytesMeters = false;

  /// The source's human name is the view's accessible name.
  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

}  // namespace lanternfold
