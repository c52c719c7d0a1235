#include "NetworkWidgetVexExtension/Bundle/NetworkWidgetBundle.h"

#include "NetworkWidgetVexExtension/Bundle/BandwidthMonitorWidget.h"
#include "NetworkWidgetVexExtension/Bundle/InternetNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Bundle/NetworkAdapterWidget.h"
#include "NetworkWidgetVexExtension/Bundle/PanoramicNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Bundle/WlanNetworkStateWidget.h"

namespace lanternfold {

std::vector<Widget> NetworkWidgetBundle::body() const {
  std::vector<Widget> widgets;
  widgets.push_back(PanoramicNetworkStateWidget{}.body(surroundings_));
  widgets.push_back(InternetNetworkStateWidget{}.body(surroundings_));
  widgets.push_back(NetworkAdapterWidget{}.body(surroundings_));
  widgets.push_back(BandwidthMonitorWidget{}.body(surroundings_));
  widgets.push_back(WlanNetworkStateWidget{}.body(surroundings_));
  return widgets;
}

}  // namespace lanternfold
