// The first half of the layout: how large a view is for what it is offered.
//
// One measurer serves one layout of one view that stays where it is: answers are remembered by the
// view's address and the offer, because stacks ask the same view several times.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <tuple>
#include <vector>

#include "ViewTree/FittedText.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/Layout.h"
#include "ViewTree/View.h"

namespace lanternfold {

enum class Axis { horizontal, vertical };

/// What a stack gives its children: an offer each, and the space between them.
struct StackPlan {
  std::vector<ProposedSize> offers;
  double spacing = 0;
};

/// Which of its rows `WholeRowsNode` shows: the first ones, as a stack of this spacing.
struct ShownRows {
  std::span<const View> rows;
  double spacing = 0;
};

class ViewMeasurer {
 public:
  explicit ViewMeasurer(const LayoutContext& context) : context_(context) {}

  [[nodiscard]] Size measure(const View& view, const ProposedSize& offer);

  /// The text of a text node or of the time of drawing, as it is shown for `offer`.
  [[nodiscard]] FittedText shownText(const View& view, const ProposedSize& offer) const;
  [[nodiscard]] StackPlan planStack(std::span<const View> children, Axis axis, double spacing,
                                    const ProposedSize& offer);
  [[nodiscard]] ShownRows shownRows(const View& rows, const ProposedSize& offer);
  [[nodiscard]] const View& chosen(const View& choice, const ProposedSize& offer);

 private:
  // A missing length of an offer is remembered as -1, which no parent offers.
  using Key = std::tuple<const View*, double, double>;

  [[nodiscard]] Size computed(const View& view, const ProposedSize& offer);
  [[nodiscard]] Size stackSize(std::span<const View> children, Axis axis, double spacing,
                               const ProposedSize& offer);
  [[nodiscard]] Size layeredSize(const View& stack, const ProposedSize& offer);
  [[nodiscard]] Size frameSize(const View& view, const FrameNode& frame, const ProposedSize& offer);
  [[nodiscard]] Size paddedSize(const View& view, const EdgeInsets& insets,
                                const ProposedSize& offer);

  const LayoutContext& context_;
  std::map<Key, Size> remembered_;
};

/// What a padding leaves of an offer, and the insets it really takes.
struct PaddingPlan {
  EdgeInsets insets;
  ProposedSize offer;
};
[[nodiscard]] PaddingPlan planPadding(const EdgeInsets& insets, const ProposedSize& offer);

}  // namespace lanternfold
