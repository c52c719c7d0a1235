#include "ViewTree/LayoutPass.h"

#include <algorithm>
#include <span>
#include <utility>
#include <variant>

namespace lanternfold {
namespace {

/// The side of a picture or a shape that nobody gives a size.
constexpr double idealSide = 10;

LaidOutView unfilled(ViewNode node, const Rect& frame) {
  return {std::move(node), frame, {}, {}, {}, {}, {}};
}

/// Whether anything in `view` is aligned by the baselines of its texts; nobody else asks for them.
bool isAlignedByBaseline(const View& view) {
  constexpr VerticalAlignment baseline = VerticalAlignment::firstTextBaseline;
  const bool isAligned = std::visit(
      [](const auto& node) {
        if constexpr (requires { node.alignment.vertical; }) {
          return node.alignment.vertical == baseline;
        } else if constexpr (requires { node.alignment == baseline; }) {
          return node.alignment == baseline;
        } else if constexpr (requires { node.guide == baseline; }) {
          return node.guide == baseline;
        } else {
          return false;
        }
      },
      view.node);
  return isAligned || std::ranges::any_of(view.children, isAlignedByBaseline);
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

/// The arrangement of every kind of view; without children it is that of what fills its place.
struct Arranger {
  Arranging view;

  Arrangement operator()(const TextNode&) const { return {}; }
  Arrangement operator()(const DrawingTimeNode&) const { return {}; }
  Arrangement operator()(const EmptyNode&) const { return {}; }
  Arrangement operator()(const SymbolNode& node) const {
    return {symbolSize(node, view.offer), {}, {}, {}};
  }
  Arrangement operator()(const HStackNode& node) const { return arranged(node, view); }
  Arrangement operator()(const VStackNode& node) const { return arranged(node, view); }
  Arrangement operator()(const ZStackNode& node) const { return arranged(node, view); }
  Arrangement operator()(const WholeRowsNode& node) const { return arranged(node, view); }
  Arrangement operator()(const WholeGridNode& node) const { return arranged(node, view); }

  template <typename Node>
  Arrangement operator()(const Node& node) const {
    if (view.self.children.empty()) return {filling(view.offer), {}, {}, {}};
    if constexpr (requires { arranged(node, view); }) {
      return arranged(node, view);
    } else {
      return arrangedAsItsChild(view);
    }
  }
};

}  // namespace

LayoutPass::LayoutPass(const View& root, const LayoutContext& context)
    : context_(context),
      asksForBaselines_(isAlignedByBaseline(root)),
      steps_(mostLayoutSteps),
      texts_(context.measurer, steps_) {}

Size LayoutPass::measure(LayoutNode& node, const ProposedSize& offer) {
  return settled(node, offer).size;
}

Dimensions LayoutPass::dimensions(LayoutNode& node, const ProposedSize& offer) {
  return settled(node, offer);
}

const Dimensions& LayoutPass::settled(LayoutNode& node, const ProposedSize& offer) {
  static const Dimensions none;
  steps_.take(1);
  if (const Dimensions* known = node.dimensions.find(offer)) return *known;
  if (steps_.haveRunOut() && !node.children.empty()) return none;
  Dimensions found;
  if (node.text != nullptr) {
    found = textDimensions(node, offer);
  } else {
    Arrangement arrangement = arrange(node, offer);
    found = {arrangement.size, std::move(arrangement.guides)};
  }
  return node.dimensions.add(offer, std::move(found));
}

Dimensions LayoutPass::textDimensions(LayoutNode& node, const ProposedSize& offer) {
  const FittedText& text = fitted(node, offer);
  Dimensions dimensions{text.size, {}};
  if (asksForBaselines_) {
    moveGuide(dimensions.guides, VerticalAlignment::firstTextBaseline, text.firstBaseline);
  }
  return dimensions;
}

const FittedText& LayoutPass::fitted(LayoutNode& node, const ProposedSize& offer) {
  // The height matters only to a text that could need more of it.
  const ProposedSize question{offer.width, node.text->lineLimit > 1 ? offer.height : std::nullopt};
  if (const FittedText* known = node.fittedTexts.find(question)) return *known;
  return node.fittedTexts.add(question, fittedText(*node.text, question, texts_));
}

Arrangement LayoutPass::arrange(LayoutNode& node, const ProposedSize& offer) {
  return std::visit(Arranger{{node, offer, *this}}, node.view->node);
}

LaidOutView LayoutPass::place(LayoutNode& node, Point origin, const ProposedSize& offer) {
  LaidOutView placed = unfilled(node.view->node, {origin, measure(node, offer)});
  placed.accessibleDescription = accessibleDescription(*node.view, context_.drawingTime);
  if (node.dimensions.find(offer) == nullptr) return placed;
  if (node.text != nullptr) {
    placeText(node, offer, placed);
  } else if (!node.children.empty()) {
    placeChildren(arrange(node, offer), placed);
  }
  return placed;
}

void LayoutPass::placeText(LayoutNode& node, const ProposedSize& offer, LaidOutView& placed) {
  const FittedText& text = fitted(node, offer);
  const Rect& frame = placed.frame;
  const double height = frame.size.height / static_cast<double>(text.lines.size());
  double top = frame.top();
  for (const FittedLine& line : text.lines) {
    const double left =
        beginningFor(positionOf(node.text->alignment, {{line.width, height}, {}}),
                     frame.left() + positionOf(node.text->alignment, {frame.size, {}}).before);
    placed.shownLines.push_back({line.text, {{left, top}, {line.width, height}}});
    top += height;
  }
  placed.shownText = text.text;
  placed.shownFont = text.font;
}

void LayoutPass::placeChildren(const Arrangement& arrangement, LaidOutView& placed) {
  const Point origin = placed.frame.origin;
  std::span<const PlacedChild> children = arrangement.children;
  for (const PlacedStack& stack : arrangement.stacks) {
    placed.children.push_back(placeStack(stack, children.first(stack.count), origin));
    children = children.subspan(stack.count);
  }
  for (const PlacedChild& child : children) {
    const Point at{origin.x + child.at.x, origin.y + child.at.y};
    placed.children.push_back(place(*child.node, at, child.offer));
  }
}

LaidOutView LayoutPass::placeStack(const PlacedStack& stack, std::span<const PlacedChild> children,
                                   Point origin) {
  const Rect& frame = stack.frame;
  LaidOutView placed =
      unfilled(stack.node, {{origin.x + frame.left(), origin.y + frame.top()}, frame.size});
  std::vector<const View*> views;
  for (const PlacedChild& child : children) {
    views.push_back(child.node->view);
    const Point at{origin.x + child.at.x, origin.y + child.at.y};
    placed.children.push_back(place(*child.node, at, child.offer));
  }
  placed.accessibleDescription = accessibleDescription(views, context_.drawingTime);
  return placed;
}

}  // namespace lanternfold
