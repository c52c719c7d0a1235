// The extension's widgets, in the order of the gallery.
//
// Made by: the composition root of whoever serves them.
#pragma once

#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

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
