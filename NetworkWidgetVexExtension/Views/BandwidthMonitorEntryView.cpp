#include "NetworkWidgetVexExtension/Views/BandwidthMonitorEntryView.h"

#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

/// The main application's bandwidth monitor in its mini mode.
constexpr const char* bandwidthMonitorUrl = "net.quernaple.LanternfoldX://bandwidth-monitor?mini=1";
constexpr double gaugeWidth = 80;
constexpr double tilePadding = 16;

/// A template image: drawn in the foreground colour, as large as its frame allows.
View gauge() {
  FrameNode frame;
  frame.width.fixed = gaugeWidth;
  return symbol("Gauge").frame(frame);
}

}  // namespace

View BandwidthMonitorEntryView::body(const WidgetEnvironment& environment) const {
  FrameNode whole;
  whole.width.maximum = unlimited;
  whole.height.maximum = unlimited;
  std::vector<View> column;
  column.push_back(gauge());
  View tile = vstack(HorizontalAlignment::centre, 0, std::move(column))
                  .frame(whole)
                  .padding(tilePadding)
                  .background(roundedRectangle(0, Colour::named(accentColour)))
                  .foreground(Colour::white());
  return link(bandwidthMonitorUrl, std::move(tile))
      .accessible(environment.strings.localized("Bandwidth Monitor"));
}

}  // namespace lanternfold
