// How a content and its accessories share the width of their row.
//
// The trailing accessory is shown where the content has `besideBoth` left, the leading one where it
// has `besideLeading`; the content has what they leave. Where the trailing one is not shown, the
// content is offered `besideBoth` at the most, where none is, `besideLeading`. Without an offer all
// of it is shown, and the content is as wide as it is by itself.
#pragma once

#include <array>
#include <optional>

#include "ViewTree/Geometry.h"
#include "ViewTree/View.h"

namespace lanternfold {

class ViewMeasurer;

/// The three parts in the row's order: what each is offered; none for a part that is not shown.
struct AccessoryRowPlan {
  std::array<std::optional<ProposedSize>, 3> offers;
  Size size;
};

/// `row` is a view of `AccessoryRowNode`.
[[nodiscard]] AccessoryRowPlan planAccessoryRow(const View& row, const ProposedSize& offer,
                                                ViewMeasurer& measurer);

}  // namespace lanternfold
