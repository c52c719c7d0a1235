// The extension's widgets, in the order of the gallery.
//
// Made by: the composition root of whoever serves them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

/// A widget as somebody names it who has no machine to make it on.
struct WidgetKind {
  std::string kind;
  std::vector<WidgetFamily> families;  ///< from the smallest
};

/// Of every widget, in the order of the bundle.
[[nodiscard]] std::vector<WidgetKind> widgetKinds();

class NetworkWidgetBundle {
 public:
  explicit NetworkWidgetBundle(WidgetSurroundings surroundings)
      : surroundings_(std::move(surroundings)) {}

  /// Made afresh by each call. They outlive the bundle; to be let go of on the main queue.
  [[nodiscard]] std::vector<Widget> body() const;

 private:
  WidgetSurroundings surroundings_;
};

}  // namespace lanternfold
