// The order of the gallery, in one place.
//
// Used by: the bundle, and by what names its widgets.
#pragma once

#include "NetworkWidgetVexExtension/Bundle/BandwidthMonitorWidget.h"
#include "NetworkWidgetVexExtension/Bundle/InternetNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Bundle/NetworkAdapterWidget.h"
#include "NetworkWidgetVexExtension/Bundle/PanoramicNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Bundle/WlanNetworkStateWidget.h"

namespace lanternfold {

/// Calls `use` with each widget.
template <typename Use>
void forEachWidget(Use use) {
  use(PanoramicNetworkStateWidget{});
  use(InternetNetworkStateWidget{});
  use(NetworkAdapterWidget{});
  use(BandwidthMonitorWidget{});
  use(WlanNetworkStateWidget{});
}

}  // namespace lanternfold
