#include "NetworkWidgetVexExtension/Bundle/NetworkWidgetBundle.h"

#include "NetworkWidgetVexExtension/Bundle/BandwidthMonitorWidget.h"
#include "NetworkWidgetVexExtension/Bundle/InternetNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Bundle/NetworkAdapterWidget.h"
#include "NetworkWidgetVexExtension/Bundle/PanoramicNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Bundle/WlanNetworkStateWidget.h"

namespace lanternfold {
namespace {

/// In the order of the gallery.
template <typename Use>
void forEachWidget(Use use) {
  use(PanoramicNetworkStateWidget{});
  use(InternetNetworkStateWidget{});
  use(NetworkAdapterWidget{});
  use(BandwidthMonitorWidget{});
  use(WlanNetworkStateWidget{});
}

}  // namespace

std::vector<WidgetKind> widgetKinds() {
  std::vector<WidgetKind> kinds;
  forEachWidget([&](const auto& widget) {
    kinds.push_back({.kind = widget.kind, .families = widget.families()});
  });
  return kinds;
}

std::vector<Widget> NetworkWidgetBundle::body() const {
  std::vector<Widget> widgets;
  forEachWidget([&](const auto& widget) { widgets.push_back(widget.body(surroundings_)); });
  return widgets;
}

}  // namespace lanternfold
