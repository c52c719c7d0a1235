// One layout of one view: asks how large views are for what they are offered, remembers the
// answers, and gives every view its place.
//
// An archive from outside may be made so that every level asks the next several new questions. So
// each question, and each text in proportion to its length, is a step, and there are
// `mostLayoutSteps` of them, many times what a full widget takes. When they have run out, a view
// with children that was not asked this before takes no room and shows none of them, and a text
// that was not measured before shows nothing; all else is placed as ever. The same view in the same
// size always ends the same.
#pragma once

#include <cstddef>
#include <string>

#include "ViewTree/Arrangement.h"
#include "ViewTree/Layout.h"
#include "ViewTree/LayoutNode.h"
#include "ViewTree/RememberingTextMeasurer.h"

namespace lanternfold {

inline constexpr std::size_t mostLayoutSteps = 250'000;

class LayoutPass {
 public:
  /// `root` is the view that is laid out, of which all others are parts.
  LayoutPass(const View& root, const LayoutContext& context);

  [[nodiscard]] Size measure(LayoutNode& node, const ProposedSize& offer);
  /// The same with the guides that are moved.
  [[nodiscard]] Dimensions dimensions(LayoutNode& node, const ProposedSize& offer);

  /// `node` with its top left corner at `origin`, for what its parent offers it.
  [[nodiscard]] LaidOutView place(LayoutNode& node, Point origin, const ProposedSize& offer);

  /// Whether the buttons of this intent are pressed.
  [[nodiscard]] bool isPressed(const std::string& intent) const {
    return context_.pressedIntent == intent;
  }

 private:
  [[nodiscard]] const Dimensions& settled(LayoutNode& node, const ProposedSize& offer);
  [[nodiscard]] Dimensions textDimensions(LayoutNode& node, const ProposedSize& offer);
  [[nodiscard]] const FittedText& fitted(LayoutNode& node, const ProposedSize& offer);
  [[nodiscard]] Arrangement arrange(LayoutNode& node, const ProposedSize& offer);
  void placeText(LayoutNode& node, const ProposedSize& offer, LaidOutView& placed);
  void placeChildren(const Arrangement& arrangement, LaidOutView& placed);
  [[nodiscard]] LaidOutView placeStack(const PlacedStack& stack,
                                       std::span<const PlacedChild> children, Point origin);

  const LayoutContext& context_;
  bool asksForBaselines_;
  LayoutSteps steps_;
  RememberingTextMeasurer texts_;
};

}  // namespace lanternfold
