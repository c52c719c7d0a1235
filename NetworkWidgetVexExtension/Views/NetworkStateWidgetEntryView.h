// A widget that shows the network's state: the cards of its sources over the background, with the
// refresh button.
#pragma once

#include "NetworkWidgetVexExtension/Providers/NetworkStateEntry.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct NetworkStateWidgetEntryView {
  NetworkStateEntry entry;

  /// Only sources of `environment.shownCategories`: a state also tells what its widget has not
  /// asked for, as it was before anything was known.
  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

}  // namespace lanternfold
