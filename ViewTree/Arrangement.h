// What one view makes of an offer: its own size, and where its children stand in it. Measuring
// takes the size of it, placing the rest, so that each kind of view says both in one place.
//
// Made by: the functions below, one for each kind that has children. Read by: `LayoutPass`.
#pragma once

#include <optional>
#include <vector>

#include "ViewTree/Geometry.h"
#include "ViewTree/Guides.h"
#include "ViewTree/View.h"

namespace lanternfold {

class LayoutPass;
struct LayoutNode;

/// A child, the top left corner of which stands at `at` below and beside that of its parent.
struct PlacedChild {
  LayoutNode* node = nullptr;
  Point at;
  ProposedSize offer;
};

/// A stack that is made for the next `count` children, which count their places from the parent.
struct PlacedStack {
  ViewNode node;
  Rect frame;
  std::size_t count = 0;
};

struct Arrangement {
  Size size;
  std::vector<PlacedChild> children;  ///< in the order of drawing
  std::vector<PlacedStack> stacks;    ///< of all the children, or none
  MovedGuides guides;
};

/// The view, what its parent offers it, and whom to ask for the sizes of its children.
struct Arranging {
  LayoutNode& self;
  const ProposedSize& offer;
  LayoutPass& pass;
};

// Stacks: every child gets its share of the room, least flexible first.
[[nodiscard]] Arrangement arranged(const HStackNode& node, const Arranging& view);
[[nodiscard]] Arrangement arranged(const VStackNode& node, const Arranging& view);
[[nodiscard]] Arrangement arranged(const ZStackNode& node, const Arranging& view);

// Children of which some are shown.
[[nodiscard]] Arrangement arranged(const FirstThatFitsNode& node, const Arranging& view);
[[nodiscard]] Arrangement arranged(const WholeRowsNode& node, const Arranging& view);
[[nodiscard]] Arrangement arranged(const WholeGridNode& node, const Arranging& view);
[[nodiscard]] Arrangement arranged(const AccessoryRowNode& node, const Arranging& view);

// One child, and what stands around or behind it.
[[nodiscard]] Arrangement arranged(const FrameNode& node, const Arranging& view);
[[nodiscard]] Arrangement arranged(const PaddingNode& node, const Arranging& view);
[[nodiscard]] Arrangement arranged(const OffsetNode& node, const Arranging& view);
[[nodiscard]] Arrangement arranged(const BackgroundNode& node, const Arranging& view);
/// The face that is shown.
[[nodiscard]] Arrangement arranged(const ButtonNode& node, const Arranging& view);
[[nodiscard]] Arrangement arranged(const HorizontalGuideNode& node, const Arranging& view);
[[nodiscard]] Arrangement arranged(const VerticalGuideNode& node, const Arranging& view);
/// Of a view that is as large as its only child and stands in its place.
[[nodiscard]] Arrangement arrangedAsItsChild(const Arranging& view);

}  // namespace lanternfold
