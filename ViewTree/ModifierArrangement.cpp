// Views around one other view.
#include <algorithm>
#include <optional>
#include <utility>

#include "ViewTree/Arrangement.h"
#include "ViewTree/LayoutArithmetic.h"
#include "ViewTree/LayoutNode.h"
#include "ViewTree/LayoutPass.h"

namespace lanternfold {
namespace {

/// A view of `size` with its child at `at`; the child's guides are the view's.
Arrangement around(LayoutNode& child, Dimensions dimensions, Size size, Point at,
                   const ProposedSize& offer) {
  return {size, {{&child, at, offer}}, {}, shifted(std::move(dimensions.guides), at)};
}

/// A view that is as large as `child` and stands in its place.
Arrangement arrangedAs(LayoutNode& child, const Arranging& view) {
  Dimensions dimensions = view.pass.dimensions(child, view.offer);
  const Size size = dimensions.size;
  return around(child, std::move(dimensions), size, {0, 0}, view.offer);
}

/// Where `inner` stands, aligned with `outer`.
Point alignedWithin(Alignment alignment, const Dimensions& outer, const Dimensions& inner) {
  return {beginningFor(positionOf(alignment.horizontal, inner),
                       positionOf(alignment.horizontal, outer).before),
          beginningFor(positionOf(alignment.vertical, inner),
                       positionOf(alignment.vertical, outer).before)};
}

template <typename Alignment>
Arrangement withMovedGuide(Alignment guide, double by, const Arranging& view) {
  const Dimensions child = view.pass.dimensions(view.self.children.front(), view.offer);
  Arrangement result = arrangedAsItsChild(view);
  moveGuide(result.guides, guide, positionOf(guide, child).before + by);
  return result;
}

}  // namespace

Arrangement arranged(const FrameNode& node, const Arranging& view) {
  LayoutNode& child = view.self.children.front();
  const ProposedSize inner{frameOffer(node.width, view.offer.width),
                           frameOffer(node.height, view.offer.height)};
  Dimensions dimensions = view.pass.dimensions(child, inner);
  const Size size{frameExtent(node.width, view.offer.width, dimensions.size.width),
                  frameExtent(node.height, view.offer.height, dimensions.size.height)};
  const Point at = alignedWithin(node.alignment, {size, {}}, dimensions);
  return around(child, std::move(dimensions), size, at, inner);
}

Arrangement arranged(const PaddingNode& node, const Arranging& view) {
  LayoutNode& child = view.self.children.front();
  const ProposedSize& offer = view.offer;
  const auto across = fittingInsets(node.insets.leading, node.insets.trailing, offer.width);
  const auto down = fittingInsets(node.insets.top, node.insets.bottom, offer.height);
  const ProposedSize inner{paddedOffer(offer.width, across), paddedOffer(offer.height, down)};
  Dimensions dimensions = view.pass.dimensions(child, inner);
  const Size size{paddedLength(dimensions.size.width, across, inner.width, offer.width),
                  paddedLength(dimensions.size.height, down, inner.height, offer.height)};
  return around(child, std::move(dimensions), size, {across.first, down.first}, inner);
}

Arrangement arranged(const OffsetNode& node, const Arranging& view) {
  Arrangement result = arrangedAsItsChild(view);
  // The guides stay with the room.
  result.children.front().at = node.by;
  return result;
}

Arrangement arranged(const BackgroundNode& node, const Arranging& view) {
  Arrangement result = arrangedAsItsChild(view);
  LayoutNode& behind = view.self.children.back();
  const ProposedSize whole{result.size.width, result.size.height};
  const Point at = alignedWithin(node.alignment, {result.size, result.guides},
                                 view.pass.dimensions(behind, whole));
  // What stands behind comes first, because it is drawn first.
  result.children.insert(result.children.begin(), {&behind, at, whole});
  return result;
}

Arrangement arranged(const HorizontalGuideNode& node, const Arranging& view) {
  return withMovedGuide(node.guide, node.by, view);
}

Arrangement arranged(const VerticalGuideNode& node, const Arranging& view) {
  return withMovedGuide(node.guide, node.by, view);
}

Arrangement arranged(const ButtonNode& node, const Arranging& view) {
  std::vector<LayoutNode>& faces = view.self.children;
  return arrangedAs(view.pass.isPressed(node.intent) ? faces.back() : faces.front(), view);
}

Arrangement arrangedAsItsChild(const Arranging& view) {
  return arrangedAs(view.self.children.front(), view);
}

}  // namespace lanternfold
