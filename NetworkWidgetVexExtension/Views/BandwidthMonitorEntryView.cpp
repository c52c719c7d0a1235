#include "NetworkWidgetVexExtension/Views/BandwidthMonitorEntryView.h"

#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

constexpr double gaugeWidth = 80;

/// A template image: drawn in the foreground colour, as large as its frame allows.
View gauge() {
  FrameNode frame;
  frame.width.fixed = gaugeWidth;
  return symbol("Gauge").frame(frame);
}

}  // namespace

View BandwidthMonitorEntryView::body() const {
  FrameNode whole;
  whole.width.maximum = unlimited;
  whole.height.maximum = unlimited;
  std::vector<View> column;
  column.push_back(gauge());
  return vstack(HorizontalAlignment::centre, 0, std::move(column))
      .frame(whole)
      .padding(contentPadding)
      .background(roundedRectangle(0, Colour::named(accentColour)))
      .foreground(Colour::white());
}

}  // namespace lanternfold
