#include "NetworkWidgetVexExtension/Bundle/WlanNetworkStateWidget.h"

#include "NetworkWidgetVexExtension/Bundle/NetworkStateConfiguration.h"

namespace lanternfold {

Widget WlanNetworkStateWidget::body(const WidgetSurroundings& surroundings) const {
  return networkStateConfiguration(kind, NetworkSourceCategory::wlan(), surroundings)
      .configurationDisplayName(surroundings.strings.localized("WiFi"))
      .description(surroundings.strings.localized("WiFi widget."))
      .supportedFamilies(families());
}

}  // namespace lanternfold
