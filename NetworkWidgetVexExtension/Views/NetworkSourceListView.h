// The rows of a source, one below the other.
#pragma once

#include <cstddef>

#include "NetworkMonitor/Model/NetworkState.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct NetworkSourceListView {
  Alignment alignment = topLeading;
  AnyNetworkSource source;
  std::size_t rowLimit = 0;

  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

}  // namespace lanternfold
