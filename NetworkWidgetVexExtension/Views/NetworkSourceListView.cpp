#include "NetworkWidgetVexExtension/Views/NetworkSourceListView.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/SourceListItemView.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

/// The space between rows where they all have room, and where they have less and less.
constexpr std::array rowSpacings = {9.0, 4.0, 1.0};

}  // namespace

View NetworkSourceListView::body(const WidgetEnvironment& environment) const {
  const SourceList items = compressedListRepresentationOf(source, environment.strings);
  std::vector<View> rows;
  for (std::size_t index = 0; index < std::min(items.size(), rowLimit); ++index) {
    rows.push_back(SourceListItemView{items[index], index == 0}.body());
  }
  std::vector<View> columns;
  columns.push_back(wholeRows(HorizontalAlignment::leading,
                              {rowSpacings.begin(), rowSpacings.end()}, std::move(rows)));
  FrameNode frame;
  frame.width.maximum = unlimited;
  frame.alignment = alignment;
  return hstack(VerticalAlignment::top, 5, std::move(columns)).frame(frame);
}

}  // namespace lanternfold
