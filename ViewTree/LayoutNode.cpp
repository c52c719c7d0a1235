#include "ViewTree/LayoutNode.h"

#include <variant>

#include "Support/TextPlaceholders.h"

namespace lanternfold {
namespace {

template <typename... Kinds>
bool isOneOf(const ViewNode& node) {
  return (std::holds_alternative<Kinds>(node) || ...);
}

/// Changes how its child looks or is placed by others, not the room it takes.
bool keepsTheRoom(const ViewNode& node) {
  return isOneOf<OffsetNode, BackgroundNode, OpacityNode, ForegroundNode, ClipNode,
                 ColourSchemeNode, InvalidatableContentNode, ButtonNode, LinkNode,
                 LayoutPriorityNode, HorizontalGuideNode, VerticalGuideNode>(node);
}

bool isModifier(const ViewNode& node) {
  return keepsTheRoom(node) || isOneOf<FrameNode, PaddingNode>(node);
}

bool isNothing(const LayoutNode& node) {
  const ViewNode& kind = node.view->node;
  if (std::holds_alternative<EmptyNode>(kind)) return true;
  return keepsTheRoom(kind) && !node.children.empty() && node.children.front().isNothing;
}

double priorityOf(const LayoutNode& node) {
  if (const auto* own = std::get_if<LayoutPriorityNode>(&node.view->node)) return own->priority;
  return isModifier(node.view->node) && !node.children.empty() ? node.children.front().priority : 0;
}

}  // namespace

LayoutNode makeLayoutNode(const View& view, const std::string& drawingTime) {
  LayoutNode node;
  node.view = &view;
  if (const auto* text = std::get_if<TextNode>(&view.node)) {
    node.text = text;
  } else if (const auto* time = std::get_if<DrawingTimeNode>(&view.node)) {
    node.filledText = std::make_unique<TextNode>();
    node.filledText->text = fillPlaceholders(time->format, {drawingTime});
    node.filledText->font = time->font;
    node.text = node.filledText.get();
  }
  node.children.reserve(view.children.size());
  for (const View& child : view.children) {
    node.children.push_back(makeLayoutNode(child, drawingTime));
  }
  node.isNothing = isNothing(node);
  node.priority = priorityOf(node);
  return node;
}

}  // namespace lanternfold
