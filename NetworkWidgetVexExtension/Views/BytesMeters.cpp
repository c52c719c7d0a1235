#include "NetworkWidgetVexExtension/Views/BytesMeters.h"

#include <string_view>
#include <utility>

#include "Platform/ByteCounts.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

/// How far a number of many digits may shrink to stay inside the circle.
constexpr double smallestNumberScale = 0.6;

struct MeterMeasures {
  double side;
  double labelSize;
  double numberSize;
  /// Negative: digits and arrows reach neither far up nor below their baseline, so that lines drawn
  /// closer than their fonts ask for still stand apart, and together just fill the circle.
  double lineSpacing;
};

MeterMeasures measuresOf(BytesCircularMeter::Size size) {
  if (size == BytesCircularMeter::Size::small) return {36, 9, 11, -1.5};
  return {42, 10, 13, -0.5};
}

View meterText(std::string_view content, double size, FontWeight weight) {
  return text(content, {{size, weight, FontLeading::tight}, Truncation::tail, smallestNumberScale});
}

std::vector<View> meters(const std::vector<BytesMeterFigure>& figures,
                         BytesCircularMeter::Size size, const WidgetEnvironment& environment) {
  std::vector<View> views;
  views.reserve(figures.size());
  for (const BytesMeterFigure& figure : figures) {
    views.push_back(BytesCircularMeter{figure, size}.body(environment));
  }
  return views;
}

}  // namespace

double bytesMeterSide(BytesCircularMeter::Size size) { return measuresOf(size).side; }

View BytesCircularMeter::body(const WidgetEnvironment& environment) const {
  const ByteCountFormatter formatter =
      byteCountFormatter(ByteCountStyle::binaryFromKilobytes, environment.strings);
  const MeterMeasures measures = measuresOf(size);
  std::vector<View> lines;
  lines.push_back(meterText(metrics.label, measures.labelSize, FontWeight::regular));
  lines.push_back(
      meterText(formatter.number(metrics.byteCount), measures.numberSize, FontWeight::bold));
  lines.push_back(
      meterText(formatter.unit(metrics.byteCount), measures.labelSize, FontWeight::regular));
  std::vector<View> layers;
  layers.push_back(circle(2));
  layers.push_back(
      vstack(HorizontalAlignment::centre, measures.lineSpacing, std::move(lines)).padding(5));
  return zstack(centred, std::move(layers))
      .frame(measures.side, measures.side)
      .accessible(metrics.accessibleName + ' ' + formatter.text(metrics.byteCount));
}

View HBytesMeters::body(const WidgetEnvironment& environment) const {
  return hstack(VerticalAlignment::centre, 5, meters(metrics, size, environment));
}

View VBytesMeters::body(const WidgetEnvironment& environment) const {
  return vstack(HorizontalAlignment::centre, 5, meters(metrics, size, environment));
}

std::vector<BytesMeterFigure> bytesMeterFigures(const ConnectionMetrics& metrics,
                                                const StringTable& strings) {
  return {{metrics.recvBytes, "\u2193", strings.localized("Received")},
          {metrics.sentBytes, "\u2191", strings.localized("Sent")}};
}

}  // namespace lanternfold
