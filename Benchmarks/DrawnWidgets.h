// The views that the benchmarks draw: the placeholder of every widget with texts in every family.
#pragma once

#include <string>
#include <vector>

#include "ViewTree/View.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

struct DrawnWidget {
  std::string name;
  WidgetFamily family = WidgetFamily::medium;
  View view;
};

[[nodiscard]] std::vector<DrawnWidget> drawnWidgets();

/// `view` with every text another one than in any other variant, of about the same length.
[[nodiscard]] View variant(View view, unsigned number);

}  // namespace lanternfold
