// The arithmetic of the layout: how stacks share out their room, how frames, paddings and
// alignments turn one length into another. Pure functions of numbers, tested by themselves.
#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "ViewTree/Geometry.h"
#include "ViewTree/View.h"

namespace lanternfold {

/// A child of a stack, seen along the stack's axis.
struct StackMember {
  double priority = 0;
  double minimum = 0;  ///< its length when offered nothing
  double maximum = 0;  ///< its length when offered everything; may be unlimited
  /// Its length for an offer; absent asks for the ideal length.
  std::function<double(std::optional<double>)> lengthFor;
};

/// The offers that a stack makes its members, in their order, so that together with `spacing`
/// between them they take up at most `available` where they can: higher priorities first, within
/// one the least flexible first, each offered an equal share of what is left after the minimum of
/// the lower priorities. Without `available` every member is asked for its ideal length.
[[nodiscard]] std::vector<std::optional<double>> stackOffers(
    std::optional<double> available, double spacing, const std::vector<StackMember>& members);

/// `spacing`, or less when `count` members' gaps would not fit into `available`.
[[nodiscard]] double fittingSpacing(double spacing, std::size_t count,
                                    std::optional<double> available);

/// How high a row of a grid is for an offer; absent asks for the ideal height.
using RowHeight = std::function<double(std::optional<double>)>;

/// What the first rows of a grid are offered, as many of them as are shown: as many as have room
/// within `available` at the least they take, with `spacing` between them, but at least one. Each
/// of these gets an equal share of the height, or less where it needs less; a row that makes
/// nothing of its share leaves it to the others. In more height no row that is still shown beside
/// the same ones is lower. Rows that are not shown are hardly asked.
[[nodiscard]] std::vector<double> wholeRowOffers(std::optional<double> available, double spacing,
                                                 const std::vector<RowHeight>& rows);

/// What a frame offers its child.
[[nodiscard]] std::optional<double> frameOffer(const FrameLength& frame,
                                               std::optional<double> proposal);
/// The frame's own length around a child of length `child`, which stands in for a bound that the
/// frame does not have: only a frame with both bounds is as large as it is offered whatever its
/// child is.
[[nodiscard]] double frameExtent(const FrameLength& frame, std::optional<double> proposal,
                                 double child);

/// The length of a child of length `child` with insets around it, for which it was offered `inner`
/// of `outer`: what takes all of it takes no bit more, whatever the rounding.
[[nodiscard]] double paddedLength(double child, std::pair<double, double> insets,
                                  std::optional<double> inner, std::optional<double> outer);

/// The pair of insets, made smaller in proportion when they do not fit into `available`.
[[nodiscard]] std::pair<double, double> fittingInsets(double before, double after,
                                                      std::optional<double> available);

/// Where a length of `inner` begins within `outer`.
[[nodiscard]] double alignedOffset(HorizontalAlignment alignment, double outer, double inner);
[[nodiscard]] double alignedOffset(VerticalAlignment alignment, double outer, double inner);

}  // namespace lanternfold
