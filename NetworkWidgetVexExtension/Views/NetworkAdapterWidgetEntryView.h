// The adapter widget: one adapter's card over the background, with the refresh button.
#pragma once

#include "NetworkWidgetVexExtension/Providers/NetworkAdapterEntry.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct NetworkAdapterWidgetEntryView {
  NetworkAdapterEntry entry;

  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

}  // namespace lanternfold
