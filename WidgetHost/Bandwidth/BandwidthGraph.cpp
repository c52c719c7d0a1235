#include "WidgetHost/Bandwidth/BandwidthGraph.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"
#include "WidgetHost/Bandwidth/BandwidthScale.h"

namespace lanternfold {
namespace {

constexpr double lineThickness = 1;
constexpr double plateRadius = 6;
/// Bars that are wider have a gap between them.
constexpr double widthWithGap = 3;
constexpr double lowestBar = 1;
constexpr double barRadius = 1;

/// Darker than the background: what stands on it stands out more.
constexpr Colour plateColour{Rgba{0, 0, 0, 1}, 0.18};
constexpr double ruleOpacity = 0.2;

/// Where things stand in a graph of a size.
class Plot {
 public:
  Plot(const TrafficMinute& minute, Size size)
      : size_(size),
        scale_(bandwidthScale(minute)),
        middle_((size.height - lineThickness) * scale_.receivedShare()) {}

  [[nodiscard]] const BandwidthScale& scale() const { return scale_; }
  [[nodiscard]] double left(std::size_t second) const {
    return size_.width * static_cast<double>(second) / secondsShown;
  }
  [[nodiscard]] double barWidth() const {
    const double pitch = left(1);
    return pitch < widthWithGap ? pitch : pitch - 1;
  }
  /// Of the line between the two directions.
  [[nodiscard]] double middle() const { return middle_; }
  [[nodiscard]] double lengthOf(double rate) const {
    return rate * (size_.height - lineThickness) / (scale_.receivedMaximum + scale_.sentMaximum);
  }

 private:
  Size size_;
  BandwidthScale scale_;
  double middle_;
};

View box(Colour colour, double radius, const Rect& place) {
  return roundedRectangle(radius, std::move(colour))
      .frame(place.size.width, place.size.height)
      .offset(place.origin.x, place.origin.y);
}

Colour foreground(double opacity) {
  Colour colour = Colour::named(foregroundColour);
  colour.opacity = opacity;
  return colour;
}

/// Half of the largest rate, on each side where there is room for it.
void addRules(std::vector<View>& layers, const Plot& plot, double width) {
  const double step = plot.scale().labelledMaximum() / 2;
  const auto add = [&](double y) {
    layers.push_back(box(foreground(ruleOpacity), 0, {{0, y}, {width, lineThickness}}));
  };
  if (step < plot.scale().receivedMaximum) add(plot.middle() - plot.lengthOf(step));
  if (step < plot.scale().sentMaximum) add(plot.middle() + plot.lengthOf(step));
}

void addBars(std::vector<View>& layers, const Plot& plot, const TrafficMinute& minute) {
  const double width = plot.barWidth();
  for (std::size_t second = 0; second < minute.size(); ++second) {
    if (!minute[second]) continue;
    const double left = plot.left(second);
    if (const double rate = minute[second]->received; rate > 0) {
      const double length = std::max(plot.lengthOf(rate), lowestBar);
      layers.push_back(box(Colour::named(receivedColour), barRadius,
                           {{left, plot.middle() - length}, {width, length}}));
    }
    if (const double rate = minute[second]->sent; rate > 0) {
      const double length = std::max(plot.lengthOf(rate), lowestBar);
      layers.push_back(box(Colour::named(sentColour), barRadius,
                           {{left, plot.middle() + lineThickness}, {width, length}}));
    }
  }
}

/// A piece of the line for each stretch of seconds that were measured.
void addLine(std::vector<View>& layers, const Plot& plot, const TrafficMinute& minute) {
  const auto isMeasured = [](const auto& rate) { return rate.has_value(); };
  auto begin = std::ranges::find_if(minute, isMeasured);
  while (begin != minute.end()) {
    const auto end = std::find_if_not(begin, minute.end(), isMeasured);
    const double left = plot.left(static_cast<std::size_t>(begin - minute.begin()));
    const double right = plot.left(static_cast<std::size_t>(end - minute.begin()));
    layers.push_back(box(foreground(1), 0, {{left, plot.middle()}, {right - left, lineThickness}}));
    begin = std::find_if(end, minute.end(), isMeasured);
  }
}

}  // namespace

View bandwidthGraph(const TrafficMinute& minute, Size size) {
  if (!(size.width > 0 && size.height > lineThickness)) return emptyView();
  const Plot plot(minute, size);
  std::vector<View> layers;
  layers.push_back(roundedRectangle(0, plateColour).frame(size.width, size.height));
  addRules(layers, plot, size.width);
  addBars(layers, plot, minute);
  addLine(layers, plot, minute);
  return zstack(topLeading, std::move(layers))
      .frame(size.width, size.height, topLeading)
      .clipped(plateRadius);
}

}  // namespace lanternfold
