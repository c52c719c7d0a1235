// How the cells of a grid share its room.
//
// The width is that which is offered, and the cells of a row share it equally; without an offer
// they are all as wide as the widest of them by itself. The height is shared by the rows, each as
// high as its highest cell: all have what they need where that fits. Else as many rows are shown as
// fit at the least they take, the first one always; each of them gets an equal share of the height,
// or less where it needs less, and what a row makes nothing of (because a row of text more would
// not fit) goes to the others, the first ones first. What is offered a cell in the end is its share
// of the width and the height of its row.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "ViewTree/Geometry.h"
#include "ViewTree/View.h"

namespace lanternfold {

class ViewMeasurer;

/// A row that is shown: cells `first` to `first + count`.
struct GridRow {
  std::size_t first = 0;
  std::size_t count = 0;
  double cellWidth = 0;
  double spacing = 0;  ///< between its cells
  double top = 0;      ///< below the top of the grid
  double height = 0;
};

struct GridPlan {
  std::vector<GridRow> rows;
  Size size;
};

[[nodiscard]] GridPlan planGrid(const WholeGridNode& grid, std::span<const View> cells,
                                const ProposedSize& offer, ViewMeasurer& measurer);

}  // namespace lanternfold
