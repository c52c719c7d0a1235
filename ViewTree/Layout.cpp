#include "ViewTree/Layout.h"

#include <cstddef>
#include <span>
#include <utility>
#include <variant>

#include "ViewTree/AccessoryRow.h"
#include "ViewTree/GridLayout.h"
#include "ViewTree/LayoutArithmetic.h"
#include "ViewTree/ViewMeasurer.h"

namespace lanternfold {
namespace {

/// The second half of the layout: gives every view its place.
class Placement {
 public:
  explicit Placement(const LayoutContext& context) : context_(context), measurer_(context) {}

  /// `view` with its top left corner at `origin`, for what its parent offers it.
  LaidOutView place(const View& view, Point origin, const ProposedSize& offer) {
    LaidOutView placed = unfilled(view.node, {origin, measurer_.measure(view, offer)});
    placed.accessibleDescription = accessibleDescription(view, context_.drawingTime);
    if (std::holds_alternative<TextNode>(view.node) ||
        std::holds_alternative<DrawingTimeNode>(view.node)) {
      placeText(view, placed, offer);
    } else if (!view.children.empty()) {
      placeChildren(view, placed, offer);
    }
    return placed;
  }

  /// `view` aligned within `area`, which it is offered whole.
  LaidOutView placeAligned(const View& view, const Rect& area, Alignment alignment,
                           const ProposedSize& offer) {
    const Size size = measurer_.measure(view, offer);
    const Point origin{
        area.left() + alignedOffset(alignment.horizontal, area.size.width, size.width),
        area.top() + alignedOffset(alignment.vertical, area.size.height, size.height)};
    return place(view, origin, offer);
  }

 private:
  static LaidOutView unfilled(ViewNode node, const Rect& frame) {
    return {std::move(node), frame, {}, {}, {}, {}, {}};
  }

  void placeText(const View& view, LaidOutView& placed, const ProposedSize& offer) {
    FittedText fitted = measurer_.shownText(view, offer);
    const auto* words = std::get_if<TextNode>(&view.node);
    const HorizontalAlignment alignment =
        words != nullptr ? words->alignment : HorizontalAlignment::leading;
    const Rect& frame = placed.frame;
    const double height = frame.size.height / static_cast<double>(fitted.lines.size());
    double top = frame.top();
    for (FittedLine& line : fitted.lines) {
      const double left = frame.left() + alignedOffset(alignment, frame.size.width, line.width);
      placed.shownLines.push_back({std::move(line.text), {{left, top}, {line.width, height}}});
      top += height;
    }
    placed.shownText = std::move(fitted.text);
    placed.shownFont = fitted.font;
  }

  void placeChildren(const View& view, LaidOutView& placed, const ProposedSize& offer) {
    const ViewNode& node = view.node;
    const View& only = view.children.front();
    const Point origin = placed.frame.origin;
    if (const auto* row = std::get_if<HStackNode>(&node)) {
      placeRow(view.children, *row, placed, offer);
    } else if (const auto* column = std::get_if<VStackNode>(&node)) {
      placeColumn(view.children, *column, placed, offer);
    } else if (const auto* rows = std::get_if<WholeRowsNode>(&node)) {
      placed.children.push_back(placeRows(view, *rows, placed.frame, offer));
    } else if (const auto* grid = std::get_if<WholeGridNode>(&node)) {
      placeGrid(view.children, *grid, placed, offer);
    } else if (const auto* parts = std::get_if<AccessoryRowNode>(&node)) {
      placeAccessoryRow(view, *parts, placed, offer);
    } else if (const auto* layers = std::get_if<ZStackNode>(&node)) {
      for (const View& child : view.children) {
        placed.children.push_back(placeAligned(child, placed.frame, layers->alignment, offer));
      }
    } else if (std::holds_alternative<FirstThatFitsNode>(node)) {
      placed.children.push_back(place(measurer_.chosen(view, offer), origin, offer));
    } else if (const auto* frame = std::get_if<FrameNode>(&node)) {
      const ProposedSize inner{frameOffer(frame->width, offer.width),
                               frameOffer(frame->height, offer.height)};
      placed.children.push_back(placeAligned(only, placed.frame, frame->alignment, inner));
    } else if (const auto* padding = std::get_if<PaddingNode>(&node)) {
      const PaddingPlan plan = planPadding(padding->insets, offer);
      const Point inner{origin.x + plan.insets.leading, origin.y + plan.insets.top};
      placed.children.push_back(place(only, inner, plan.offer));
    } else if (const auto* moved = std::get_if<OffsetNode>(&node)) {
      const Point shifted{origin.x + moved->by.x, origin.y + moved->by.y};
      placed.children.push_back(place(only, shifted, offer));
    } else if (const auto* background = std::get_if<BackgroundNode>(&node)) {
      const ProposedSize whole{placed.frame.size.width, placed.frame.size.height};
      // What stands behind comes first, because it is drawn first.
      placed.children.push_back(
          placeAligned(view.children.back(), placed.frame, background->alignment, whole));
      placed.children.push_back(place(only, origin, offer));
    } else {
      placed.children.push_back(place(only, origin, offer));
    }
  }

  void placeRow(std::span<const View> children, const HStackNode& row, LaidOutView& placed,
                const ProposedSize& offer) {
    const StackPlan plan = measurer_.planStack(children, Axis::horizontal, row.spacing, offer);
    Point next = placed.frame.origin;
    for (std::size_t index = 0; index < children.size(); ++index) {
      const Size size = measurer_.measure(children[index], plan.offers[index]);
      const double down = alignedOffset(row.alignment, placed.frame.size.height, size.height);
      placed.children.push_back(
          place(children[index], {next.x, next.y + down}, plan.offers[index]));
      next.x += size.width + plan.spacing;
    }
  }

  void placeAccessoryRow(const View& view, const AccessoryRowNode& row, LaidOutView& placed,
                         const ProposedSize& offer) {
    const AccessoryRowPlan plan = planAccessoryRow(view, offer, measurer_);
    Point next = placed.frame.origin;
    for (std::size_t part = 0; part < plan.offers.size(); ++part) {
      if (!plan.offers[part]) continue;
      const View& child = view.children[part];
      const Size size = measurer_.measure(child, *plan.offers[part]);
      const double down = alignedOffset(row.alignment, placed.frame.size.height, size.height);
      placed.children.push_back(place(child, {next.x, next.y + down}, *plan.offers[part]));
      next.x += size.width + row.spacing;
    }
  }

  void placeColumn(std::span<const View> children, const VStackNode& column, LaidOutView& placed,
                   const ProposedSize& offer) {
    const StackPlan plan = measurer_.planStack(children, Axis::vertical, column.spacing, offer);
    Point next = placed.frame.origin;
    for (std::size_t index = 0; index < children.size(); ++index) {
      const Size size = measurer_.measure(children[index], plan.offers[index]);
      const double across = alignedOffset(column.alignment, placed.frame.size.width, size.width);
      placed.children.push_back(
          place(children[index], {next.x + across, next.y}, plan.offers[index]));
      next.y += size.height + plan.spacing;
    }
  }

  /// The rows that are shown, as the stack that they are.
  LaidOutView placeRows(const View& view, const WholeRowsNode& rows, const Rect& frame,
                        const ProposedSize& offer) {
    const ShownRows shown = measurer_.shownRows(view, offer);
    const VStackNode column{rows.alignment, shown.spacing};
    LaidOutView placed = unfilled(column, frame);
    placed.accessibleDescription = accessibleDescription(shown.rows, context_.drawingTime);
    placeColumn(shown.rows, column, placed, offer);
    return placed;
  }

  /// Row by row, each as the stack that it is.
  void placeGrid(std::span<const View> cells, const WholeGridNode& grid, LaidOutView& placed,
                 const ProposedSize& offer) {
    const Point origin = placed.frame.origin;
    for (const GridRow& row : planGrid(grid, cells, offer, measurer_).rows) {
      const std::span<const View> cellsOfRow = cells.subspan(row.first, row.count);
      const Size whole{placed.frame.size.width, row.height};
      const Rect area{{origin.x, origin.y + row.top}, whole};
      LaidOutView line = unfilled(HStackNode{grid.alignment.vertical, row.spacing}, area);
      line.accessibleDescription = accessibleDescription(cellsOfRow, context_.drawingTime);
      Rect cell{area.origin, {row.cellWidth, row.height}};
      for (const View& content : cellsOfRow) {
        line.children.push_back(
            placeAligned(content, cell, grid.alignment, {row.cellWidth, row.height}));
        cell.origin.x += row.cellWidth + row.spacing;
      }
      placed.children.push_back(std::move(line));
    }
  }

  const LayoutContext& context_;
  ViewMeasurer measurer_;
};

void mirror(LaidOutView& view, double width) {
  const auto mirrorFrame = [width](Rect& frame) { frame.origin.x = width - frame.right(); };
  mirrorFrame(view.frame);
  for (ShownLine& line : view.shownLines) mirrorFrame(line.frame);
  for (LaidOutView& child : view.children) mirror(child, width);
}

}  // namespace

LaidOutView layOut(const View& view, Size size, const LayoutContext& context) {
  Placement placement(context);
  LaidOutView laidOut =
      placement.placeAligned(view, {{0, 0}, size}, centred, {size.width, size.height});
  if (context.direction == LayoutDirection::rightToLeft) mirror(laidOut, size.width);
  return laidOut;
}

}  // namespace lanternfold
