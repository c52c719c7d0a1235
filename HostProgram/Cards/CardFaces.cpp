#include "HostProgram/Cards/CardFaces.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace lanternfold {
namespace {

/// The common part; none where there is none, or where a side is no number.
std::optional<Rect> visiblePart(const Rect& frame, const Rect& within) {
  const double left = std::max(frame.left(), within.left());
  const double top = std::max(frame.top(), within.top());
  const Size size{std::min(frame.right(), within.right()) - left,
                  std::min(frame.bottom(), within.bottom()) - top};
  if (!std::isfinite(left) || !std::isfinite(top)) return std::nullopt;
  if (!(size.width > 0) || !(size.height > 0)) return std::nullopt;
  return Rect{{left, top}, size};
}

class FaceCollector {
 public:
  void collect(const LaidOutView& view, const Rect& clip) {
    if (faces.size() == mostCardFaces) return;
    const std::optional<Rect> visible = visiblePart(view.frame, clip);
    if (visible) note(view, *visible);
    if (!std::holds_alternative<ClipNode>(view.node)) {
      collectChildren(view, clip);
    } else if (visible) {
      collectChildren(view, *visible);
    }
  }

  std::vector<CardFace> faces;

 private:
  void note(const LaidOutView& view, const Rect& visible) {
    if (const auto* button = std::get_if<ButtonNode>(&view.node)) {
      faces.push_back({*button, visible, view.accessibleDescription});
    } else if (const auto* link = std::get_if<LinkNode>(&view.node)) {
      faces.push_back({*link, visible, view.accessibleDescription});
    }
  }

  void collectChildren(const LaidOutView& view, const Rect& clip) {
    for (const LaidOutView& child : view.children) collect(child, clip);
  }
};

}  // namespace

std::vector<CardFace> cardFaces(const LaidOutView& card, Size cardSize) {
  FaceCollector collector;
  collector.collect(card, {{0, 0}, cardSize});
  return std::move(collector.faces);
}

}  // namespace lanternfold
