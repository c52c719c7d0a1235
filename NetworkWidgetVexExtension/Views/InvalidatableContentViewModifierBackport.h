// Marks what a widget shows as doubtful once a newer entry has been asked for, where the platform
// knows such a mark.
#pragma once

#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct InvalidatableContentViewModifierBackport {
  bool invalidatable = false;

  /// `content` as it is on a platform without the mark, which came with the buttons.
  [[nodiscard]] View body(View content, const WidgetEnvironment& environment) const;
};

}  // namespace lanternfold
