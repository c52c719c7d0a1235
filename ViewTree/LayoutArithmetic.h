// The arithmetic of the layout: how stacks share out their room, how frames, paddings and
// alignments turn one length into another. Pure functions of numbers, tested by themselves.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "ViewTree/Geometry.h"
#include "ViewTree/View.h"

namespace lanternfold {

/// Whether a length has room in what is offered, but for rounding.
[[nodiscard]] bool fits(double length, std::optional<double> offered);

/// A child of a stack, seen along the stack's axis.
struct StackMember {
  double priority = 0;
  double minimum = 0;  ///< its length when offered nothing
  double maximum = 0;  ///< its length when offered everything; may be unlimited
};

/// How long a member is for an offer.
using MemberLength = std::function<double(std::size_t member, double offer)>;

/// The offers that a stack makes its members, in their order, so that together with `spacing`
/// between them they take up at most `available` where they can: higher priorities first, within
/// one the least flexible first, each offered an equal share of what is left after the minimum of
/// the lower priorities.
[[nodiscard]] std::vector<double> stackOffers(double available, double spacing,
                                              const std::vector<StackMember>& members,
                                              const MemberLength& lengthFor);

/// `spacing`, or less when `count` members' gaps would not fit into `available`.
[[nodiscard]] double fittingSpacing(double spacing, std::size_t count,
                                    std::optional<double> available);

/// How high a row of a grid is for an offer; absent asks for the ideal height.
using RowHeight = std::function<double(std::size_t row, std::optional<double> offer)>;

/// The heights of the first of `count` rows, as many of them as are shown. All have their ideal
/// height where that fits. Else as many are shown as have room within `available` at the least they
/// take, with `spacing` between them, but at least one; each of these gets an equal share of the
/// height, or less where it needs less; and what a row makes nothing of (because a line more would
/// not fit) goes to the others, the first ones first. In more height no row is lower that is shown
/// beside the same ones. Rows that are not shown are hardly asked.
[[nodiscard]] std::vector<double> wholeRowHeights(std::optional<double> available, double spacing,
                                                  std::size_t count, const RowHeight& heightFor);

/// What a frame offers its child.
[[nodiscard]] std::optional<double> frameOffer(const FrameLength& frame,
                                               std::optional<double> proposal);
/// The frame's own length around a child of length `child`, which stands in for a bound that the
/// frame does not have: only a frame with both bounds is as large as it is offered whatever its
/// child is.
[[nodiscard]] double frameExtent(const FrameLength& frame, std::optional<double> proposal,
                                 double child);

/// What insets leave of an offer for the child.
[[nodiscard]] std::optional<double> paddedOffer(std::optional<double> outer,
                                                std::pair<double, double> insets);
/// The length of a child of length `child` with insets around it, for which it was offered `inner`
/// of `outer`: what takes all of it takes no bit more, whatever the rounding.
[[nodiscard]] double paddedLength(double child, std::pair<double, double> insets,
                                  std::optional<double> inner, std::optional<double> outer);

/// The pair of insets, made smaller in proportion when they do not fit into `available`.
[[nodiscard]] std::pair<double, double> fittingInsets(double before, double after,
                                                      std::optional<double> available);

}  // namespace lanternfold
