#include "NetworkWidgetVexExtension/Views/BackgroundView.h"

#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/RefreshButton.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

/// The gradient never changes: built once and kept.
const View& backgroundGradient() {
  static const View gradient =
      linearGradient(Colour::named(gradientStartColour), Colour::named(gradientEndColour));
  return gradient;
}

/// Larger than a narrow widget, which it must not widen: hence the frame around it.
View logo() {
  FrameNode whole;
  whole.width = {std::nullopt, 0, std::nullopt, unlimited};
  whole.height = whole.width;
  whole.alignment = topTrailing;
  return image("LanternfoldLogo").frame(160, 160).opacity(0.2, 0.1).offset(40, -40).frame(whole);
}

/// Beside the refresh button, which stands in the same corner, on the line of its middle.
View timestamp(const WidgetEnvironment& environment) {
  FrameNode line;
  line.height.fixed = refreshButtonSide;
  FrameNode corner;
  corner.width.maximum = unlimited;
  corner.height.maximum = unlimited;
  corner.alignment = bottomLeading;
  const double beside = environment.supportsButtons ? refreshButtonSide + 5 : 0;
  return drawingTime(environment.strings.localized("Last update %@"), smallFont)
      .frame(line)
      .padding({0, refreshButtonInset + beside, refreshButtonInset, refreshButtonInset})
      .frame(corner)
      .foreground(Colour::named(foregroundColour));
}

}  // namespace

View BackgroundView::body(const WidgetEnvironment& environment) const {
  std::vector<View> layers;
  layers.push_back(backgroundGradient());
  layers.push_back(logo());
  if (showTimestamp) layers.push_back(timestamp(environment));
  return zstack(topTrailing, std::move(layers));
}

}  // namespace lanternfold
