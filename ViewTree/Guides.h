// The lines of a view by which others are aligned with it: its edges and middles, the baseline of
// its first text, and where a view has moved one of these for itself.
//
// Pure. Used by: the arrangements.
#pragma once

#include <limits>
#include <optional>
#include <vector>

#include "ViewTree/Geometry.h"

namespace lanternfold {

/// Where a guide stands that is not where the size of the view says.
struct MovedGuide {
  std::optional<HorizontalAlignment> across;
  std::optional<VerticalAlignment> down;  ///< one of the two
  double at = 0;                          ///< from the left or the top of the view

  friend bool operator==(const MovedGuide&, const MovedGuide&) = default;
};
using MovedGuides = std::vector<MovedGuide>;

/// A view as those see it who place it: how large it is, and which of its guides are moved.
struct Dimensions {
  Size size;
  MovedGuides guides;
};

/// What stands before and behind a guide.
struct GuidePosition {
  double before = 0;
  double after = 0;
};

[[nodiscard]] GuidePosition positionOf(HorizontalAlignment guide, const Dimensions& view);
[[nodiscard]] GuidePosition positionOf(VerticalAlignment guide, const Dimensions& view);

/// What stands before and behind a guide that several views share.
class SharedGuide {
 public:
  void add(const GuidePosition& position);

  /// Where the guide stands, below the beginning of the first of them.
  [[nodiscard]] double position() const { return isEmpty() ? 0 : before_; }
  /// What all of them take up, the parts included that a moved guide pushes out.
  [[nodiscard]] double extent() const;

 private:
  static constexpr double nothing = -std::numeric_limits<double>::max();

  [[nodiscard]] bool isEmpty() const { return before_ == nothing; }

  double before_ = nothing;
  double after_ = nothing;
};

/// Where a view begins, whose guide is to stand at `guide`.
[[nodiscard]] double beginningFor(const GuidePosition& inner, double guide);

/// Puts the guide of that name at `at`.
void moveGuide(MovedGuides& guides, HorizontalAlignment guide, double at);
void moveGuide(MovedGuides& guides, VerticalAlignment guide, double at);

/// The guides of a child as those of its parent, in which it stands at `at`.
[[nodiscard]] MovedGuides shifted(MovedGuides guides, Point at);

/// The topmost baseline of a text, of those of several children; each already `shifted`.
void addFirstBaseline(MovedGuides& guides, const MovedGuides& child);

}  // namespace lanternfold
