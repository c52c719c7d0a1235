#include "ViewTree/HitTest.h"

#include <algorithm>
#include <ranges>
#include <variant>

namespace lanternfold {
namespace {

bool contains(const Rect& frame, Point point) {
  return point.x >= frame.left() && point.x < frame.right() && point.y >= frame.top() &&
         point.y < frame.bottom();
}

/// Whether `point` is inside the frame with its corners rounded.
bool containsRounded(const Rect& frame, double cornerRadius, Point point) {
  if (!contains(frame, point)) return false;
  const double radius = std::min({cornerRadius, frame.size.width / 2, frame.size.height / 2});
  const double across =
      std::max({frame.left() + radius - point.x, point.x - (frame.right() - radius), 0.0});
  const double down =
      std::max({frame.top() + radius - point.y, point.y - (frame.bottom() - radius), 0.0});
  return across * across + down * down <= radius * radius;
}

bool isInteractive(const ViewNode& node) {
  return std::holds_alternative<ButtonNode>(node) || std::holds_alternative<LinkNode>(node);
}

}  // namespace

const LaidOutView* interactiveViewAt(const LaidOutView& view, Point point) {
  if (const auto* clip = std::get_if<ClipNode>(&view.node)) {
    if (!containsRounded(view.frame, clip->cornerRadius, point)) return nullptr;
  }
  // What is drawn later stands above.
  for (const LaidOutView& child : std::views::reverse(view.children)) {
    if (const LaidOutView* hit = interactiveViewAt(child, point)) return hit;
  }
  return isInteractive(view.node) && contains(view.frame, point) ? &view : nullptr;
}

}  // namespace lanternfold
