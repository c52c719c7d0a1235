#include "ViewTree/View.h"

#include <utility>

#include "Support/TextPlaceholders.h"
#include "ViewTree/DisplayableText.h"

namespace lanternfold {
namespace {

View modified(ViewNode node, View content) {
  std::vector<View> children;
  children.push_back(std::move(content));
  return {std::move(node), std::move(children), std::nullopt};
}

}  // namespace

View View::frame(double width, double height, Alignment alignment) && {
  FrameNode fixed;
  fixed.width.fixed = width;
  fixed.height.fixed = height;
  fixed.alignment = alignment;
  return modified(fixed, std::move(*this));
}

View View::frame(FrameNode frame) && { return modified(frame, std::move(*this)); }

View View::padding(double allEdges) && {
  return modified(PaddingNode{{allEdges, allEdges, allEdges, allEdges}}, std::move(*this));
}

View View::padding(EdgeInsets insets) && { return modified(PaddingNode{insets}, std::move(*this)); }

View View::offset(double x, double y) && { return modified(OffsetNode{{x, y}}, std::move(*this)); }

View View::background(View behind, Alignment alignment) && {
  View result = modified(BackgroundNode{alignment}, std::move(*this));
  result.children.push_back(std::move(behind));
  return result;
}

View View::opacity(double light, double dark) && {
  return modified(OpacityNode{light, dark}, std::move(*this));
}

View View::foreground(Colour colour) && {
  return modified(ForegroundNode{std::move(colour)}, std::move(*this));
}

View View::clipped(double cornerRadius) && {
  return modified(ClipNode{cornerRadius}, std::move(*this));
}

View View::colourScheme(ColourScheme scheme) && {
  return modified(ColourSchemeNode{scheme}, std::move(*this));
}

View View::layoutPriority(double priority) && {
  return modified(LayoutPriorityNode{priority}, std::move(*this));
}

View View::accessible(std::string_view name) && {
  accessibleName = displayableText(name);
  return std::move(*this);
}

std::string accessibleDescription(const View& view, const std::string& drawingTime) {
  if (view.accessibleName) return *view.accessibleName;
  if (const auto* content = std::get_if<TextNode>(&view.node)) return content->text;
  if (const auto* time = std::get_if<DrawingTimeNode>(&view.node)) {
    return fillPlaceholders(time->format, {drawingTime});
  }
  // The choices of one place all say the same; the richest says it whole.
  if (std::holds_alternative<FirstThatFitsNode>(view.node)) {
    return accessibleDescription(view.children.front(), drawingTime);
  }
  return accessibleDescription(std::span(view.children), drawingTime);
}

std::string accessibleDescription(std::span<const View> views, const std::string& drawingTime) {
  std::string joined;
  for (const View& view : views) {
    const std::string description = accessibleDescription(view, drawingTime);
    if (description.empty()) continue;
    if (!joined.empty()) joined += ", ";
    joined += description;
  }
  return joined;
}

}  // namespace lanternfold
