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
/// included. Those of the internet are a sum that has no such size: they are there once it was
/// resolved.
bool hasMetrics(const AnyNetworkSource& source) {
  if (metricsOf(source) != ConnectionMetrics::empty()) return true;
  return std::holds_alternative<InternetInfo>(source) && activeOf(source);
}

View oneAboveTheOther(View icon, View rows) {
  std::vector<View> parts;
  parts.push_back(std::move(icon));
  parts.push_back(std::move(rows));
  return vstack(HorizontalAlignment::leading, spacing, std::move(parts));
}

/// The meters, none where the card is too low for them.
View metersOf(const AnyNetworkSource& source, const WidgetEnvironment& environment) {
  const std::vector<BytesMeterFigure> figures =
      bytesMeterFigures(metricsOf(source), environment.strings);
  std::vector<View> choices;
  choices.push_back(HBytesMeters{figures, environment.bytesMeterSize}.body(environment));
  choices.push_back(emptyView());
  return firstThatFits(FitAxes::vertical, std::move(choices));
}

}  // namespace

View NetworkSourceView::body(const WidgetEnvironment& outer) const {
  WidgetEnvironment environment = outer;
  environment.signalStrength = signalStrengthOf(source);
  View icon = NetworkSourceIconView{categoryOf(source)}.body(environment);
  View rows = NetworkSourceListView{topLeading, source, rowLimit}.body(environment);
  View meters = showBytesMeters && hasMetrics(source) ? metersOf(source, environment) : emptyView();
  if (direction == Direction::vertical) {
    rows = oneAboveTheOther(std::move(icon), std::move(rows));
    icon = emptyView();
  }
  return accessoryRow({VerticalAlignment::centre, spacing, rowsBesideIcon, rowsBesideMeters},
                      std::move(icon), std::move(rows), std::move(meters))
      .accessible(displayNameOf(source));
}

}  // namespace lanternfold
