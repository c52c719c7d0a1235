#include "NetworkWidgetVexExtension/Views/NetworkSourceListView.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/SourceListItemView.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

/// The space between rows where they all have room, and where they have not.
constexpr double wideRowSpacing = 9;
constexpr double narrowRowSpacing = 4;
constexpr double tightRowSpacing = 1;

/// All rows with the widest spacing there is room for, else as many of the first ones as there is
/// room for.
View rowsThatFit(std::vector<View> rows) {
  std::vector<View> choices;
  for (const double spacing : {wideRowSpacing, narrowRowSpacing, tightRowSpacing}) {
    choices.push_back(vstack(HorizontalAlignment::leading, spacing, rows));
  }
  for (; rows.size() > 1; rows.pop_back()) {
    choices.push_back(vstack(HorizontalAlignment::leading, tightRowSpacing, rows));
  }
  if (!rows.empty()) choices.push_back(vstack(HorizontalAlignment::leading, 0, std::move(rows)));
  return firstThatFits(FitAxes::vertical, std::move(choices));
}

}  // namespace

View NetworkSourceListView::body(const WidgetEnvironment& environment) const {
  const SourceList items = compressedListRepresentationOf(source, environment.strings);
  std::vector<View> rows;
  for (std::size_t index = 0; index < std::min(items.size(), rowLimit); ++index) {
    rows.push_back(SourceListItemView{items[index], index == 0}.body());
  }
  std::vector<View> columns;
  columns.push_back(rowsThatFit(std::move(rows)));
  FrameNode frame;
  frame.width.maximum = unlimited;
  frame.alignment = alignment;
  return hstack(VerticalAlignment::top, 5, std::move(columns)).frame(frame);
}

}  // namespace lanternfold
