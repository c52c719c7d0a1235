#include "NetworkWidgetVexExtension/Views/NetworkSourceIconView.h"

#include <algorithm>

#include "ViewTree/Elements.h"

namespace lanternfold {

std::string symbolNameOf(NetworkSourceCategory category) {
  if (category == NetworkSourceCategory::internet()) return "globe";
  if (category == NetworkSourceCategory::wlan()) return "wifi";
  if (category == NetworkSourceCategory::cellular()) return "dot.radiowaves.left.and.right";
  return "bolt.circle";
}

double strengthOf(std::int64_t signalDbm) {
  constexpr double weakestDbm = -100;
  constexpr double strongestDbm = -50;
  const double share = (static_cast<double>(signalDbm) - weakestDbm) / (strongestDbm - weakestDbm);
  return std::clamp(share, 0.0, 1.0);
}

View NetworkSourceIconView::body(const WidgetEnvironment& environment) const {
  SymbolStyle style;
  if (sourceCategory == NetworkSourceCategory::wlan()) style.strength = environment.signalStrength;
  return symbol(symbolNameOf(sourceCategory), style).frame(18, 18);
}

}  // namespace lanternfold
