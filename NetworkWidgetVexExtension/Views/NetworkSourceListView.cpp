#include "NetworkWidgetVexExtension/Views/NetworkSourceListView.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/SourceListItemView.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
View NetworkSourceListView::body(const WidgetEnvironment& environment) const {
  const SourceList items = compressedListRepresentationOf(source, environment.strings);
  std::vector<View> rows;
  for (std::size_t index = 0; index < std::min(items.size(), rowLimit); ++index) {
    rows.push_back(SourceListItemView{items[index], index == 0}.body(environment));
  }
  std::vector<View> columns;
  columns.push_back(
      wholeRows(HorizontalAlignment::leading, environment.rowSpacings, std::move(rows)));
  FrameNode frame;
  frame.width.maximum = unlimited;
  frame.alignment = alignment;
  return hstack(VerticalAlignment::top, 5, std::move(columns)).frame(frame);
}

}  // namespace lanternfold
