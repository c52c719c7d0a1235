// One row of a source: its label, and its value beside it.
#pragma once

#include <string_view>

#include "NetworkMonitor/Model/SourceListItem.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/Elements.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct SourceListItemView {
  SourceListItem item;
  bool isFirstItem = false;

  /// Every row of one line is of the same height, whatever it shows of itself. A label or value
  /// that is empty is left out. A label that is not required goes when the whole row has no room.
  /// What the system itself has to say in place of a value stands on several lines where it needs
  /// them.
  [[nodiscard]] View body(const WidgetEnvironment& environment) const;

 private:
  [[nodiscard]] View content(const TextStyle& style, const WidgetEnvironment& environment) const;
};

/// Where `value` may be shortened: an address in the middle, because both of its ends tell it from
/// its neighbours; a name at its end.
[[nodiscard]] Truncation truncationOf(std::string_view value);

}  // namespace lanternfold
