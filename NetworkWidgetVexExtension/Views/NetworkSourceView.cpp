#include "NetworkWidgetVexExtension/Views/NetworkSourceView.h"

#include <utility>
#include <variant>
#include <vector>

#include "NetworkWidgetVexExtension/Views/BytesMeters.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceIconView.h"
#include "NetworkWidgetVexExtension/Views/NetworkSourceListView.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

constexpr double spacing = 5;
/// The meters step aside when less than this is left for the rows. A card without meters gives its
/// rows no more, so that a row never loses a letter when the card grows and the meters come in.
constexpr double rowsBesideMeters = 180;
/// The icon steps aside when the rows would have less than this, too little for an address; rows
/// without it get no more.
constexpr double rowsBesideIcon = 64;

std::optional<double> signalStrengthOf(const AnyNetworkSource& source) {
  const auto* wlan = std::get_if<WlanInterface>(&source);
  if (!wlan || !wlan->currentNetwork || !wlan->currentNetwork->metrics) return std::nullopt;
  return strengthOf(wlan->currentNetwork->metrics->rssi);
}

/// Counters that nobody has read are zero like the rest of their record, the size of a packet
/// included.
bool hasMetrics(const AnyNetworkSource& source) {
  return metricsOf(source) != ConnectionMetrics::empty();
}

View rowsIn(View rows, FrameLength width) {
  FrameNode frame;
  frame.width = width;
  frame.alignment = topLeading;
  return std::move(rows).frame(frame);
}

View sideBySide(NetworkSourceView::Direction direction, View icon, View rows) {
  std::vector<View> parts;
  parts.push_back(std::move(icon));
  parts.push_back(std::move(rows));
  return direction == NetworkSourceView::Direction::vertical
             ? vstack(HorizontalAlignment::leading, spacing, std::move(parts))
             : hstack(VerticalAlignment::centre, spacing, std::move(parts));
}

/// The meters, smaller ones where the card is too low for them, none where it is lower still.
View metersOf(const AnyNetworkSource& source, const WidgetEnvironment& environment) {
  const std::vector<BytesMeterFigure> figures =
      bytesMeterFigures(metricsOf(source), environment.strings);
  std::vector<View> choices;
  for (const auto size : {BytesCircularMeter::Size::automatic, BytesCircularMeter::Size::small}) {
    choices.push_back(HBytesMeters{figures, size}.body(environment));
  }
  choices.push_back(emptyView());
  return firstThatFits(FitAxes::vertical, std::move(choices)).layoutPriority(1);
}

}  // namespace

View NetworkSourceView::body(const WidgetEnvironment& outer) const {
  WidgetEnvironment environment = outer;
  environment.signalStrength = signalStrengthOf(source);
  const View icon = NetworkSourceIconView{categoryOf(source)}.body(environment);
  const View rows = NetworkSourceListView{topLeading, source, rowLimit}.body(environment);
  std::vector<View> choices;
  FrameLength width;
  width.ideal = rowsBesideIcon;
  if (showBytesMeters && hasMetrics(source)) {
    FrameLength beside;
    beside.ideal = rowsBesideMeters;
    std::vector<View> parts;
    parts.push_back(sideBySide(direction, icon, rowsIn(rows, beside)));
    parts.push_back(metersOf(source, environment));
    choices.push_back(hstack(VerticalAlignment::centre, spacing, std::move(parts)));
    width.maximum = rowsBesideMeters;
  }
  choices.push_back(sideBySide(direction, icon, rowsIn(rows, width)));
  FrameLength alone;
  alone.maximum = rowsBesideIcon;
  choices.push_back(rowsIn(rows, alone));
  return firstThatFits(FitAxes::horizontal, std::move(choices)).accessible(displayNameOf(source));
}

}  // namespace lanternfold
