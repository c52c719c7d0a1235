#include "ViewTree/GridLayout.h"

#include <algorithm>
#include <optional>

#include "ViewTree/LayoutArithmetic.h"
#include "ViewTree/ViewMeasurer.h"

namespace lanternfold {
namespace {

class GridPlanner {
 public:
  GridPlanner(const WholeGridNode& grid, std::span<const View> cells, ViewMeasurer& measurer)
      : grid_(grid), cells_(cells), measurer_(measurer) {}

  GridPlan plan(const ProposedSize& offer) {
    const std::vector<GridRow> rows = rowsOf(offer.width);
    std::vector<RowHeight> heights;
    heights.reserve(rows.size());
    for (const GridRow& row : rows) {
      heights.emplace_back(
          [this, &row](std::optional<double> offered) { return heightOf(row, offered); });
    }
    const std::vector<double> offers = wholeRowOffers(offer.height, grid_.rowSpacing, heights);
    GridPlan plan{{rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(offers.size())}, {}};
    for (std::size_t index = 0; index < offers.size(); ++index) {
      GridRow& row = plan.rows[index];
      if (index > 0) plan.size.height += grid_.rowSpacing;
      row.top = plan.size.height;
      row.height = heightOf(row, offers[index]);
      plan.size.height += row.height;
    }
    for (const GridRow& row : rows) {
      const double gaps = row.spacing * static_cast<double>(row.count - 1);
      plan.size.width =
          std::max(plan.size.width, row.cellWidth * static_cast<double>(row.count) + gaps);
    }
    return plan;
  }

 private:
  std::vector<GridRow> rowsOf(std::optional<double> width) {
    const std::size_t columns = std::max(std::size_t{1}, grid_.columns);
    std::vector<GridRow> rows;
    for (std::size_t first = 0; first < cells_.size(); first += columns) {
      GridRow row{first, std::min(columns, cells_.size() - first), 0, 0, 0, 0};
      row.spacing = fittingSpacing(grid_.columnSpacing, row.count, width);
      const auto count = static_cast<double>(row.count);
      row.cellWidth =
          width ? std::max(0.0, (*width - row.spacing * (count - 1)) / count) : widestOf(row);
      rows.push_back(row);
    }
    return rows;
  }

  double widestOf(const GridRow& row) {
    double widest = 0;
    for (const View& cell : cells_.subspan(row.first, row.count)) {
      widest = std::max(widest, measurer_.measure(cell, {}).width);
    }
    return widest;
  }

  double heightOf(const GridRow& row, std::optional<double> offered) {
    double height = 0;
    for (const View& cell : cells_.subspan(row.first, row.count)) {
      height = std::max(height, measurer_.measure(cell, {row.cellWidth, offered}).height);
    }
    return height;
  }

  const WholeGridNode& grid_;
  std::span<const View> cells_;
  ViewMeasurer& measurer_;
};

}  // namespace

GridPlan planGrid(const WholeGridNode& grid, std::span<const View> cells, const ProposedSize& offer,
                  ViewMeasurer& measurer) {
  return GridPlanner(grid, cells, measurer).plan(offer);
}

}  // namespace lanternfold
