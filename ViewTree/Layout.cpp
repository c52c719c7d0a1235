#include "ViewTree/Layout.h"

#include "ViewTree/LayoutPass.h"

namespace lanternfold {
namespace {

void mirror(LaidOutView& view, double width) {
  const auto mirrorFrame = [width](Rect& frame) { frame.origin.x = width - frame.right(); };
  mirrorFrame(view.frame);
  for (ShownLine& line : view.shownLines) mirrorFrame(line.frame);
  for (LaidOutView& child : view.children) mirror(child, width);
}

}  // namespace

LaidOutView layOut(const View& view, Size size, const LayoutContext& context) {
  LayoutNode node = makeLayoutNode(view, context.drawingTime);
  LayoutPass pass(view, context);
  const ProposedSize offer{size.width, size.height};
  const Size own = pass.measure(node, offer);
  const Point origin{(size.width - own.width) / 2, (size.height - own.height) / 2};
  LaidOutView laidOut = pass.place(node, origin, offer);
  if (context.direction == LayoutDirection::rightToLeft) mirror(laidOut, size.width);
  return laidOut;
}

}  // namespace lanternfold
