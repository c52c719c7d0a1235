#include "NetworkWidgetVexExtension/Views/BytesMeters.h"

#include <cstddef>
#include <string>
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
  /// How far label and unit are drawn from there, away from the number: there is more room below
  /// the ring than beside the digits, which letters with flat tops would seem to touch.
  double distance;
};

MeterMeasures measuresOf(BytesCircularMeter::Size size) {
  if (size == BytesCircularMeter::Size::small) return {36, 9, 11, -1.5, 1};
  return {42, 10, 13, -0.5, 0.75};
}

/// How far a unit is drawn below its place. Capitals stand on the line and are as high as digits;
/// letters of scripts without them, which Unicode has behind Latin, Greek and Cyrillic, begin lower
/// and would reach into the ring.
double unitDrop(std::string_view unit, const MeterMeasures& measures) {
  constexpr unsigned char firstBehindCyrillic = 0xD4;
  const bool hasCapitals =
      !unit.empty() && static_cast<unsigned char>(unit.front()) < firstBehindCyrillic;
  return hasCapitals ? measures.distance : 0;
}

View meterText(std::string_view content, double size, FontWeight weight,
               std::string_view sizedWith = {}) {
  return text(content, {.font = {size, weight, FontLeading::tight},
                        .minimumScale = smallestNumberScale,
                        .sizedWith = sizedWith});
}

/// The longest number of the meters beside one: one small number among large ones would look like
/// an accident.
std::string longestNumberBeside(std::size_t meter, const std::vector<BytesMeterFigure>& figures,
                                const ByteCountFormatter& formatter) {
  std::string longest;
  for (std::size_t index = 0; index < figures.size(); ++index) {
    if (index == meter) continue;
    std::string number = formatter.number(figures[index].byteCount);
    if (number.size() > longest.size()) longest = std::move(number);
  }
  return longest;
}

std::vector<View> meters(const std::vector<BytesMeterFigure>& figures,
                         BytesCircularMeter::Size size, const WidgetEnvironment& outer) {
  const ByteCountFormatter formatter =
      byteCountFormatter(ByteCountStyle::binaryFromKilobytes, outer.strings);
  WidgetEnvironment environment = outer;
  std::vector<View> views;
  views.reserve(figures.size());
  for (std::size_t index = 0; index < figures.size(); ++index) {
    environment.numberBesideMeter = longestNumberBeside(index, figures, formatter);
    views.push_back(BytesCircularMeter{figures[index], size}.body(environment));
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
  lines.push_back(meterText(metrics.label, measures.labelSize, FontWeight::regular)
                      .offset(0, -measures.distance));
  lines.push_back(meterText(formatter.number(metrics.byteCount), measures.numberSize,
                            FontWeight::bold, environment.numberBesideMeter));
  const std::string unit = formatter.unit(metrics.byteCount);
  lines.push_back(
      meterText(unit, measures.labelSize, FontWeight::regular).offset(0, unitDrop(unit, measures)));
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
