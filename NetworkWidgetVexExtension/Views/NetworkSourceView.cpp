#include "NetworkWidgetVexExtension/Views/NetworkSourceView.h"

#include <utility>
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
/// The icon steps aside when the rows would have less than this; rows without it get no more.
constexpr double rowsBesideIcon = 40;

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

}  // namespace

View NetworkSourceView::body(const WidgetEnvironment& environment) const {
  const View icon = NetworkSourceIconView{categoryOf(source)}.body();
  const View rows = NetworkSourceListView{topLeading, source, rowLimit}.body(environment);
  std::vector<View> choices;
  FrameLength width;
  width.ideal = rowsBesideIcon;
  if (showBytesMeters) {
    FrameLength beside;
    beside.ideal = rowsBesideMeters;
    std::vector<View> parts;
    parts.push_back(sideBySide(direction, icon, rowsIn(rows, beside)));
    parts.push_back(HBytesMeters{bytesMeterFigures(metricsOf(source), environment.strings)}
                        .body(environment)
                        .layoutPriority(1));
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
