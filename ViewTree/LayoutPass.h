// One layout of one view: asks how large views are for what they are offered, remembers the
// answers, and gives every view its place.
//
// An archive from outside may be made so that every level asks the next several new questions. So
// each question, and each text in proportion to its length, is a step, and there are
// `mostLayoutSteps` of them, many times what a full widget takes. A view that was not measured
// before they ran out takes no room and shows nothing, and neither does what stands in it; what was
// measured is placed as ever. The same view in the same size always ends the same.
#pragma once

#include <cstddef>
#include <string>

#include "ViewTree/Arrangement.h"
#include "ViewTree/Layout.h"
#include "ViewTree/LayoutNode.h"
#include "ViewTree/RememberingTextMeasurer.h"

namespace lanternfold {

inline constexpr std::size_t mostLayoutSteps = 1'000'000;

class LayoutPass {
 public:
  explicit LayoutPass(const LayoutContext& context);

  [[nodiscard]] Size measure(LayoutNode& node, const ProposedSize& offer);
  /// The same with the guides that are moved.
  [[nodiscard]] Dimensions dimensions(LayoutNode& node, const ProposedSize& offer);

  /// `node` with its top left corner at `origin`, for what its parent offers it.
  [[nodiscard]] LaidOutView place(LayoutNode& node, Point origin, const ProposedSize& offer);

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
  LayoutSteps steps_;
  RememberingTextMeasurer texts_;
};

}  // namespace lanternfold
