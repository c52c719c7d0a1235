#include "ViewTree/AccessoryRow.h"

#include <algorithm>
#include <variant>

#include "ViewTree/ViewMeasurer.h"

namespace lanternfold {
namespace {

constexpr std::size_t leadingPart = 0;
constexpr std::size_t contentPart = 1;
constexpr std::size_t trailingPart = 2;

/// The width of the parts that may be shown beside the content, each with the space before the
/// content; 0 for one that takes no room.
struct AccessoryWidths {
  double leading = 0;
  double trailing = 0;
};

/// What the content is offered of `width`, and whether each accessory is shown.
struct Shares {
  bool showsLeading = true;
  bool showsTrailing = true;
  double content = 0;
};

Shares sharesOf(double width, const AccessoryRowNode& row, const AccessoryWidths& accessories,
                bool hasTrailing) {
  const double besideLeading = width - accessories.leading;
  const double besideBoth = besideLeading - accessories.trailing;
  if (hasTrailing && besideBoth >= row.besideBoth) return {true, true, besideBoth};
  if (besideLeading >= row.besideLeading) {
    return {true, false, hasTrailing ? std::min(besideLeading, row.besideBoth) : besideLeading};
  }
  return {false, false, std::min(width, row.besideLeading)};
}

}  // namespace

AccessoryRowPlan planAccessoryRow(const View& view, const ProposedSize& offer,
                                  ViewMeasurer& measurer) {
  const auto& row = std::get<AccessoryRowNode>(view.node);
  const ProposedSize own{std::nullopt, offer.height};
  const auto widthOf = [&](std::size_t part) {
    const double width = measurer.measure(view.children[part], own).width;
    return width > 0 ? width + row.spacing : 0;
  };
  const AccessoryWidths accessories{widthOf(leadingPart), widthOf(trailingPart)};
  const bool hasTrailing = !std::holds_alternative<EmptyNode>(view.children[trailingPart].node);
  Shares shares;
  ProposedSize content = own;
  if (offer.width) {
    shares = sharesOf(*offer.width, row, accessories, hasTrailing);
    content.width = shares.content;
  }
  AccessoryRowPlan plan;
  plan.offers[contentPart] = content;
  plan.size = measurer.measure(view.children[contentPart], content);
  const auto add = [&](std::size_t part, double width) {
    if (width <= 0) return;
    plan.offers[part] = own;
    plan.size.width += width;
    plan.size.height =
        std::max(plan.size.height, measurer.measure(view.children[part], own).height);
  };
  if (shares.showsLeading) add(leadingPart, accessories.leading);
  if (shares.showsTrailing) add(trailingPart, accessories.trailing);
  return plan;
}

}  // namespace lanternfold
