#include "NetworkWidgetVexExtension/Bundle/PanoramicNetworkStateWidget.h"

#include <optional>

#include "NetworkWidgetVexExtension/Bundle/NetworkStateConfiguration.h"

namespace lanternfold {

Widget PanoramicNetworkStateWidget::body(const WidgetSurroundings& surroundings) const {
  return networkStateConfiguration(kind, std::nullopt, surroundings)
      .configurationDisplayName(surroundings.strings.localized("Panoramic"))
      .description(surroundings.strings.localized("Panoramic widget."))
      .supportedFamilies(families());
}

}  // namespace lanternfold
