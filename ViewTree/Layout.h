// From a view and a size to where everything stands. The layout returns a value and leaves the
// view as it is: first each view is measured for what its parent offers, then placed.
//
// Made by: `layOut`. Read by: the draw list, the text dump, whoever looks for the button under a
// pointer.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ViewTree/Geometry.h"
#include "ViewTree/View.h"

namespace lanternfold {

/// A line of a text in its place.
struct ShownLine {
  std::string text;
  Rect frame;

  friend bool operator==(const ShownLine&, const ShownLine&) = default;
};

/// One view in its place; `frame` is in the coordinates of the whole picture.
struct LaidOutView {
  ViewNode node;
  Rect frame;
  /// What a text shows, shortened to its place; empty for every other node.
  std::string shownText;
  /// The lines of such a text, from the top.
  std::vector<ShownLine> shownLines;
  /// The font a text is shown in: the node's, or smaller when it had to shrink.
  Font shownFont;
  std::string accessibleDescription;
  std::vector<LaidOutView> children;

  friend bool operator==(const LaidOutView&, const LaidOutView&) = default;
};

struct LayoutContext {
  const TextMeasurer& measurer;
  /// The time of drawing, formatted for the user.
  std::string drawingTime;
  /// From right to left the finished layout is that of a mirror: leading is the right side, and
  /// what an offset moves goes the other way. Texts and pictures are placed so, not turned.
  LayoutDirection direction = LayoutDirection::leftToRight;
  /// The intent of the buttons that are pressed at the moment.
  std::optional<std::string> pressedIntent;
};

/// Lays `view` out in the middle of a picture of `size`, which it is offered whole.
[[nodiscard]] LaidOutView layOut(const View& view, Size size, const LayoutContext& context);

}  // namespace lanternfold
