#include "NetworkWidgetVexExtension/Bundle/InternetNetworkStateWidget.h"

#include "NetworkWidgetVexExtension/Bundle/NetworkStateConfiguration.h"

namespace lanternfold {

Widget InternetNetworkStateWidget::body(const WidgetSurroundings& surroundings) const {
  return networkStateConfiguration(kind, NetworkSourceCategory::internet(), surroundings)
      .configurationDisplayName(surroundings.strings.localized("Internet"))
      .description(surroundings.strings.localized("Internet widget."))
      .supportedFamilies(families());
}

}  // namespace lanternfold
