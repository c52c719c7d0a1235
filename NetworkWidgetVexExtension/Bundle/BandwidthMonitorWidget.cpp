#include "NetworkWidgetVexExtension/Bundle/BandwidthMonitorWidget.h"

#include <memory>
#include <utility>

#include "NetworkWidgetVexExtension/Providers/BandwidthMonitorProvider.h"
#include "NetworkWidgetVexExtension/Views/BandwidthMonitorEntryView.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "WidgetService/WidgetConfiguration.h"

namespace lanternfold {

Widget BandwidthMonitorWidget::body(const WidgetSurroundings& surroundings) const {
  WidgetContent<BandwidthMonitorEntry> content;
  content.view = [values = surroundings.environment, &strings = surroundings.strings](
                     const BandwidthMonitorEntry& entry, WidgetFamily family) {
    return BandwidthMonitorEntryView{entry}.body(makeWidgetEnvironment(values, strings, family));
  };
  return staticConfiguration(kind,
                             std::make_shared<const BandwidthMonitorProvider>(surroundings.clock),
                             std::move(content))
      .configurationDisplayName(surroundings.mainBundleStrings.localized("Bandwidth Monitor"))
      .description(surroundings.mainBundleStrings.localized("Bandwidth Monitor widget."))
      .supportedFamilies(families());
}

}  // namespace lanternfold
