#include "NetworkWidgetVexExtension/Views/NetworkSourceIconView.h"

#include "ViewTree/Elements.h"

namespace lanternfold {

std::string symbolNameOf(NetworkSourceCategory category) {
  if (category == NetworkSourceCategory::internet()) return "globe";
  if (category == NetworkSourceCategory::wlan()) return "wifi";
  if (category == NetworkSourceCategory::cellular()) return "dot.radiowaves.left.and.right";
  return "bolt.circle";
}

View NetworkSourceIconView::body() const {
  return symbol(symbolNameOf(sourceCategory)).frame(18, 18);
}

}  // namespace lanternfold
