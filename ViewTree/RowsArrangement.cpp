// Views of which only some of the children are shown: choices, rows and grids.
#include <algorithm>
#include <cstddef>
#include <numeric>
#include <span>
#include <vector>

#include "ViewTree/Arrangement.h"
#include "ViewTree/LayoutArithmetic.h"
#include "ViewTree/LayoutNode.h"
#include "ViewTree/LayoutPass.h"

namespace lanternfold {
namespace {

using Nodes = std::vector<LayoutNode*>;

Nodes thoseThatAreSomething(std::vector<LayoutNode>& children) {
  Nodes nodes;
  for (LayoutNode& child : children) {
    if (!child.isNothing) nodes.push_back(&child);
  }
  return nodes;
}

/// How many of the first rows are shown, and how far apart.
struct ShownRows {
  std::size_t count = 0;
  double spacing = 0;
};

ShownRows shownRows(const std::vector<double>& heights, const std::vector<double>& spacings,
                    std::optional<double> available) {
  const double widest = spacings.empty() ? 0 : spacings.front();
  if (!available || heights.empty()) return {heights.size(), widest};
  const double sum = std::accumulate(heights.begin(), heights.end(), 0.0);
  const auto gaps = static_cast<double>(heights.size() - 1);
  for (const double spacing : spacings) {
    if (fits(sum + spacing * gaps, available)) return {heights.size(), spacing};
  }
  const double tightest = spacings.empty() ? 0 : spacings.back();
  std::size_t count = 1;
  double height = heights.front();
  while (count < heights.size() && fits(height + tightest + heights[count], available)) {
    height += tightest + heights[count++];
  }
  return {count, tightest};
}

class GridArranger {
 public:
  GridArranger(const WholeGridNode& grid, const Arranging& view)
      : grid_(grid), view_(view), cells_(thoseThatAreSomething(view.self.children)) {}

  Arrangement arranged() {
    const std::vector<Row> rows = rowsOf(view_.offer.width);
    const auto heightFor = [&](std::size_t row, std::optional<double> offered) {
      return heightOf(rows[row], offered);
    };
    const std::vector<double> heights =
        wholeRowHeights(view_.offer.height, grid_.rowSpacing, rows.size(), heightFor);
    Arrangement result;
    for (const Row& row : rows) result.size.width = std::max(result.size.width, widthOf(row));
    double top = 0;
    for (std::size_t index = 0; index < heights.size(); ++index) {
      if (index > 0) top += grid_.rowSpacing;
      addRow(rows[index], {{0, top}, {result.size.width, heights[index]}}, result);
      top += heights[index];
    }
    result.size.height = std::max(0.0, top);
    return result;
  }

 private:
  struct Row {
    std::span<LayoutNode* const> cells;
    double cellWidth = 0;
    double spacing = 0;
  };

  std::vector<Row> rowsOf(std::optional<double> width) {
    const std::size_t columns = std::max(std::size_t{1}, grid_.columns);
    std::vector<Row> rows;
    for (std::span<LayoutNode* const> left = cells_; !left.empty();) {
      Row row{left.first(std::min(columns, left.size())), 0, 0};
      left = left.subspan(row.cells.size());
      row.spacing = fittingSpacing(grid_.columnSpacing, row.cells.size(), width);
      const auto count = static_cast<double>(row.cells.size());
      row.cellWidth =
          width ? std::max(0.0, (*width - row.spacing * (count - 1)) / count) : widestOf(row.cells);
      rows.push_back(row);
    }
    return rows;
  }

  double widestOf(std::span<LayoutNode* const> cells) {
    double widest = 0;
    for (LayoutNode* cell : cells) widest = std::max(widest, view_.pass.measure(*cell, {}).width);
    return widest;
  }

  static double widthOf(const Row& row) {
    const auto count = static_cast<double>(row.cells.size());
    return std::max(0.0, row.cellWidth * count + row.spacing * (count - 1));
  }

  double heightOf(const Row& row, std::optional<double> offered) {
    double height = 0;
    for (LayoutNode* cell : row.cells) {
      height = std::max(height, view_.pass.measure(*cell, {row.cellWidth, offered}).height);
    }
    return height;
  }

  void addRow(const Row& row, const Rect& frame, Arrangement& result) {
    const ProposedSize offer{row.cellWidth, frame.size.height};
    const Dimensions area{{row.cellWidth, frame.size.height}, {}};
    double left = frame.left();
    for (LayoutNode* cell : row.cells) {
      const Dimensions dimensions = view_.pass.dimensions(*cell, offer);
      const Alignment alignment = grid_.alignment;
      const Point at{left + beginningFor(positionOf(alignment.horizontal, dimensions),
                                         positionOf(alignment.horizontal, area).before),
                     frame.top() + beginningFor(positionOf(alignment.vertical, dimensions),
                                                positionOf(alignment.vertical, area).before)};
      result.children.push_back({cell, at, offer});
      addFirstBaseline(result.guides, shifted(dimensions.guides, at));
      left += row.cellWidth + row.spacing;
    }
    result.stacks.push_back(
        {HStackNode{grid_.alignment.vertical, row.spacing}, frame, row.cells.size()});
  }

  const WholeGridNode& grid_;
  const Arranging& view_;
  Nodes cells_;
};

}  // namespace

Arrangement arranged(const FirstThatFitsNode& node, const Arranging& view) {
  const ProposedSize& offer = view.offer;
  const bool isAcross = node.axes != FitAxes::vertical;
  const bool isDown = node.axes != FitAxes::horizontal;
  const ProposedSize ideal{isAcross ? std::nullopt : offer.width,
                           isDown ? std::nullopt : offer.height};
  LayoutNode* chosen = &view.self.children.back();
  for (LayoutNode& candidate : view.self.children) {
    const Size size = view.pass.measure(candidate, ideal);
    if ((isAcross && !fits(size.width, offer.width)) ||
        (isDown && !fits(size.height, offer.height))) {
      continue;
    }
    chosen = &candidate;
    break;
  }
  Dimensions dimensions = view.pass.dimensions(*chosen, offer);
  return {dimensions.size, {{chosen, {0, 0}, offer}}, {}, std::move(dimensions.guides)};
}

Arrangement arranged(const WholeRowsNode& node, const Arranging& view) {
  const Nodes rows = thoseThatAreSomething(view.self.children);
  ProposedSize offer{view.offer.width, std::nullopt};
  std::vector<double> heights;
  for (LayoutNode* row : rows) heights.push_back(view.pass.measure(*row, offer).height);
  const ShownRows shown = shownRows(heights, node.spacings, view.offer.height);
  // The only row has what there is, and shows what it can of itself.
  if (shown.count == 1 && !fits(heights.front(), view.offer.height)) offer = view.offer;
  Arrangement result;
  SharedGuide guide;
  std::vector<Dimensions> sizes;
  for (std::size_t index = 0; index < shown.count; ++index) {
    const Dimensions& row = sizes.emplace_back(view.pass.dimensions(*rows[index], offer));
    guide.add(positionOf(node.alignment, row));
  }
  double top = 0;
  for (std::size_t index = 0; index < shown.count; ++index) {
    const Dimensions& row = sizes[index];
    if (index > 0) top += shown.spacing;
    const Point at{beginningFor(positionOf(node.alignment, row), guide.position()), top};
    result.children.push_back({rows[index], at, offer});
    addFirstBaseline(result.guides, shifted(row.guides, at));
    top += row.size.height;
  }
  result.size.width = guide.extent();
  result.size.height = std::max(0.0, top);
  if (shown.count > 0) {
    result.stacks.push_back(
        {VStackNode{node.alignment, shown.spacing}, {{0, 0}, result.size}, shown.count});
  }
  return result;
}

Arrangement arranged(const WholeGridNode& node, const Arranging& view) {
  return GridArranger(node, view).arranged();
}

}  // namespace lanternfold
