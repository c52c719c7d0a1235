#include "ViewTree/ViewMeasurer.h"

#include <algorithm>
#include <numeric>
#include <variant>

#include "Support/TextPlaceholders.h"
#include "ViewTree/AccessoryRow.h"
#include "ViewTree/GridLayout.h"
#include "ViewTree/LayoutArithmetic.h"

namespace lanternfold {
namespace {

/// The side of a picture or a shape that nobody gives a size.
constexpr double idealSide = 10;
/// Room for lengths that are equal but for rounding.
constexpr double tolerance = 0.001;

double along(Axis axis, Size size) { return axis == Axis::horizontal ? size.width : size.height; }

double across(Axis axis, Size size) { return axis == Axis::horizontal ? size.height : size.width; }

ProposedSize withLength(Axis axis, ProposedSize offer, std::optional<double> length) {
  (axis == Axis::horizontal ? offer.width : offer.height) = length;
  return offer;
}

double priorityOf(const View& view) {
  const auto* node = std::get_if<LayoutPriorityNode>(&view.node);
  return node ? node->priority : 0;
}

/// The size of what fills whatever it is offered.
Size filling(const ProposedSize& offer) {
  return {offer.width.value_or(idealSide), offer.height.value_or(idealSide)};
}

Size symbolSize(const SymbolNode& node, const ProposedSize& offer) {
  if (!node.pointSize) return filling(offer);
  return {std::min(*node.pointSize, offer.width.value_or(unlimited)),
          std::min(*node.pointSize, offer.height.value_or(unlimited))};
}

bool fits(double length, std::optional<double> offered) {
  return !offered || length <= *offered + tolerance;
}

}  // namespace

PaddingPlan planPadding(const EdgeInsets& insets, const ProposedSize& offer) {
  const auto [leading, trailing] = fittingInsets(insets.leading, insets.trailing, offer.width);
  const auto [top, bottom] = fittingInsets(insets.top, insets.bottom, offer.height);
  PaddingPlan plan{{top, leading, bottom, trailing}, offer};
  if (plan.offer.width) plan.offer.width = std::max(0.0, *offer.width - leading - trailing);
  if (plan.offer.height) plan.offer.height = std::max(0.0, *offer.height - top - bottom);
  return plan;
}

Size ViewMeasurer::measure(const View& view, const ProposedSize& offer) {
  const Key key{&view, offer.width.value_or(-1), offer.height.value_or(-1)};
  if (const auto known = remembered_.find(key); known != remembered_.end()) return known->second;
  const Size size = computed(view, offer);
  remembered_.emplace(key, size);
  return size;
}

Size ViewMeasurer::computed(const View& view, const ProposedSize& offer) {
  const ViewNode& node = view.node;
  if (std::holds_alternative<TextNode>(node) || std::holds_alternative<DrawingTimeNode>(node)) {
    return shownText(view, offer).size;
  }
  if (const auto* symbol = std::get_if<SymbolNode>(&node)) return symbolSize(*symbol, offer);
  if (std::holds_alternative<EmptyNode>(node)) return {};
  if (view.children.empty()) {
    const bool isStack =
        std::holds_alternative<HStackNode>(node) || std::holds_alternative<VStackNode>(node) ||
        std::holds_alternative<ZStackNode>(node) || std::holds_alternative<WholeRowsNode>(node) ||
        std::holds_alternative<WholeGridNode>(node);
    return isStack ? Size{} : filling(offer);
  }
  if (const auto* row = std::get_if<HStackNode>(&node)) {
    return stackSize(view.children, Axis::horizontal, row->spacing, offer);
  }
  if (const auto* column = std::get_if<VStackNode>(&node)) {
    return stackSize(view.children, Axis::vertical, column->spacing, offer);
  }
  if (std::holds_alternative<WholeRowsNode>(node)) {
    const ShownRows shown = shownRows(view, offer);
    return stackSize(shown.rows, Axis::vertical, shown.spacing, offer);
  }
  if (const auto* grid = std::get_if<WholeGridNode>(&node)) {
    return planGrid(*grid, view.children, offer, *this).size;
  }
  if (std::holds_alternative<AccessoryRowNode>(node)) {
    return planAccessoryRow(view, offer, *this).size;
  }
  if (std::holds_alternative<ZStackNode>(node)) return layeredSize(view, offer);
  if (std::holds_alternative<FirstThatFitsNode>(node)) return measure(chosen(view, offer), offer);
  if (const auto* frame = std::get_if<FrameNode>(&node)) return frameSize(view, *frame, offer);
  if (const auto* padding = std::get_if<PaddingNode>(&node)) {
    return paddedSize(view, padding->insets, offer);
  }
  return measure(view.children.front(), offer);
}

FittedText ViewMeasurer::shownText(const View& view, const ProposedSize& offer) const {
  if (const auto* time = std::get_if<DrawingTimeNode>(&view.node)) {
    TextNode node;
    node.text = fillPlaceholders(time->format, {context_.drawingTime});
    node.font = time->font;
    return fittedText(node, offer, context_.measurer);
  }
  return fittedText(std::get<TextNode>(view.node), offer, context_.measurer);
}

const View& ViewMeasurer::chosen(const View& choice, const ProposedSize& offer) {
  const FitAxes axes = std::get<FirstThatFitsNode>(choice.node).axes;
  for (const View& candidate : choice.children) {
    const Size ideal = measure(candidate, {std::nullopt, std::nullopt});
    const bool fitsAcross = axes == FitAxes::vertical || fits(ideal.width, offer.width);
    const bool fitsDown = axes == FitAxes::horizontal || fits(ideal.height, offer.height);
    if (fitsAcross && fitsDown) return candidate;
  }
  return choice.children.back();
}

ShownRows ViewMeasurer::shownRows(const View& rows, const ProposedSize& offer) {
  const std::vector<double>& spacings = std::get<WholeRowsNode>(rows.node).spacings;
  const std::span<const View> all = rows.children;
  const double widest = spacings.empty() ? 0 : spacings.front();
  if (!offer.height || all.empty()) return {all, widest};
  std::vector<double> heights;
  for (const View& row : all) heights.push_back(measure(row, {offer.width, std::nullopt}).height);
  const double sum = std::accumulate(heights.begin(), heights.end(), 0.0);
  const auto gaps = static_cast<double>(all.size() - 1);
  for (const double spacing : spacings) {
    if (fits(sum + spacing * gaps, offer.height)) return {all, spacing};
  }
  const double tightest = spacings.empty() ? 0 : spacings.back();
  std::size_t count = 1;
  double height = heights.front();
  while (count < all.size() && fits(height + tightest + heights[count], offer.height)) {
    height += tightest + heights[count++];
  }
  return {all.first(count), tightest};
}

StackPlan ViewMeasurer::planStack(std::span<const View> children, Axis axis, double spacing,
                                  const ProposedSize& offer) {
  const std::optional<double> available = axis == Axis::horizontal ? offer.width : offer.height;
  StackPlan plan;
  plan.spacing = fittingSpacing(spacing, children.size(), available);
  std::vector<StackMember> members;
  // How flexible a child is matters only beside others: asking would measure its whole tree twice.
  const bool shares = available && children.size() > 1;
  for (const View& child : children) {
    const auto lengthFor = [this, &child, axis, offer](std::optional<double> length) {
      return along(axis, measure(child, withLength(axis, offer, length)));
    };
    members.push_back({priorityOf(child), shares ? lengthFor(0) : 0,
                       shares ? lengthFor(unlimited) : 0, lengthFor});
  }
  for (const std::optional<double>& length : stackOffers(available, plan.spacing, members)) {
    plan.offers.push_back(withLength(axis, offer, length));
  }
  return plan;
}

Size ViewMeasurer::stackSize(std::span<const View> children, Axis axis, double spacing,
                             const ProposedSize& offer) {
  const StackPlan plan = planStack(children, axis, spacing, offer);
  double length = plan.spacing * static_cast<double>(children.size() - 1);
  double breadth = 0;
  for (std::size_t index = 0; index < children.size(); ++index) {
    const Size size = measure(children[index], plan.offers[index]);
    length += along(axis, size);
    breadth = std::max(breadth, across(axis, size));
  }
  return axis == Axis::horizontal ? Size{length, breadth} : Size{breadth, length};
}

Size ViewMeasurer::layeredSize(const View& stack, const ProposedSize& offer) {
  Size size;
  for (const View& child : stack.children) {
    const Size layer = measure(child, offer);
    size = {std::max(size.width, layer.width), std::max(size.height, layer.height)};
  }
  return size;
}

Size ViewMeasurer::frameSize(const View& view, const FrameNode& frame, const ProposedSize& offer) {
  const ProposedSize inner{frameOffer(frame.width, offer.width),
                           frameOffer(frame.height, offer.height)};
  const Size child = measure(view.children.front(), inner);
  return {frameExtent(frame.width, offer.width, child.width),
          frameExtent(frame.height, offer.height, child.height)};
}

Size ViewMeasurer::paddedSize(const View& view, const EdgeInsets& insets,
                              const ProposedSize& offer) {
  const PaddingPlan plan = planPadding(insets, offer);
  const Size child = measure(view.children.front(), plan.offer);
  const EdgeInsets& taken = plan.insets;
  return {paddedLength(child.width, {taken.leading, taken.trailing}, plan.offer.width, offer.width),
          paddedLength(child.height, {taken.top, taken.bottom}, plan.offer.height, offer.height)};
}

}  // namespace lanternfold
