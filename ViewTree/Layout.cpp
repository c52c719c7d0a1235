#include "ViewTree/Layout.h"

#include <utility>
#include <variant>

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
    LaidOutView placed{view.node, {origin, measurer_.measure(view, offer)},          {},
                       {},        accessibleDescription(view, context_.drawingTime), {}};
    if (std::holds_alternative<TextNode>(view.node) ||
        std::holds_alternative<DrawingTimeNode>(view.node)) {
      FittedText shown = measurer_.shownText(view, offer);
      placed.shownText = std::move(shown.text);
      placed.shownFont = shown.font;
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
  void placeChildren(const View& view, LaidOutView& placed, const ProposedSize& offer) {
    const ViewNode& node = view.node;
    const View& only = view.children.front();
    const Point origin = placed.frame.origin;
    if (std::holds_alternative<HStackNode>(node) || std::holds_alternative<VStackNode>(node)) {
      placeStack(view, placed, offer);
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

  void placeStack(const View& view, LaidOutView& placed, const ProposedSize& offer) {
    const auto* row = std::get_if<HStackNode>(&view.node);
    const auto* column = std::get_if<VStackNode>(&view.node);
    const StackPlan plan = measurer_.planStack(view, row ? Axis::horizontal : Axis::vertical,
                                               row ? row->spacing : column->spacing, offer);
    Point next = placed.frame.origin;
    for (std::size_t index = 0; index < view.children.size(); ++index) {
      const View& child = view.children[index];
      const Size size = measurer_.measure(child, plan.offers[index]);
      Point origin = next;
      if (row) {
        origin.y += alignedOffset(row->alignment, placed.frame.size.height, size.height);
        next.x += size.width + plan.spacing;
      } else {
        origin.x += alignedOffset(column->alignment, placed.frame.size.width, size.width);
        next.y += size.height + plan.spacing;
      }
      placed.children.push_back(place(child, origin, plan.offers[index]));
    }
  }

  const LayoutContext& context_;
  ViewMeasurer measurer_;
};

}  // namespace

LaidOutView layOut(const View& view, Size size, const LayoutContext& context) {
  Placement placement(context);
  return placement.placeAligned(view, {{0, 0}, size}, centred, {size.width, size.height});
}

}  // namespace lanternfold
