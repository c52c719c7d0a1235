// What the extension's widgets are called, for somebody who makes none of them.
//
// Apart from the bundle: a program that calls this has none of what the widgets need.
#pragma once

#include <string>
#include <vector>

#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

/// A widget as somebody names it who has no machine to make it on.
struct WidgetKind {
  std::string kind;
  std::vector<WidgetFamily> families;  ///< from the smallest, at least one
  friend bool operator==(const WidgetKind&, const WidgetKind&) = default;
};

/// Of every widget, in the order of the bundle.
[[nodiscard]] std::vector<WidgetKind> widgetKinds();

}  // namespace lanternfold
