// What stands in the place of a card whose adapter is not there: its name and what that means,
// never another adapter's figures.
#pragma once

#include <string>

#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct MissingAdapterView {
  std::string name;  ///< the interface that the user chose

  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

}  // namespace lanternfold
