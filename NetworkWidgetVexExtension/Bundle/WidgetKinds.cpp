#include "NetworkWidgetVexExtension/Bundle/WidgetKinds.h"

#include "NetworkWidgetVexExtension/Bundle/BundleOrder.h"

namespace lanternfold {

std::vector<WidgetKind> widgetKinds() {
  std::vector<WidgetKind> kinds;
  forEachWidget([&](const auto& widget) {
    kinds.push_back({.kind = widget.kind, .families = widget.families()});
  });
  return kinds;
}

}  // namespace lanternfold
