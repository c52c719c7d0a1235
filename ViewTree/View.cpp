#include "ViewTree/View.h"

#include <utility>

#include "Support/TextPlaceholders.h"
#include "Support/Utf8.h"
#include "ViewTree/DisplayableText.h"

namespace lanternfold {
namespace {

View modified(ViewNode node, View content) {
  std::vector<View> children;
  children.push_back(std::move(content));
  return {std::move(node), std::move(children), std::nullopt};
}

/// Gathers what views say, until that is long enough.
class Describer {
 public:
  explicit Describer(const std::string& drawingTime) : drawingTime_(drawingTime) {}

  void add(const View& view) {
    if (said_.size() >= longestAccessibleDescription) return;
    if (view.accessibleName) say(*view.accessibleName);
    // Of rows between accessories the name is the title, which stands before what they say.
    if (view.accessibleName && !std::holds_alternative<AccessoryRowNode>(view.node)) return;
    if (const auto* content = std::get_if<TextNode>(&view.node)) return say(content->text);
    if (const auto* time = std::get_if<DrawingTimeNode>(&view.node)) {
      return say(fillPlaceholders(time->format, {drawingTime_}));
    }
    // The choices of one place all say the same; the richest says it whole.
    if (isChoice(view.node)) return add(view.children.front());
    for (const View& child : view.children) add(child);
  }

  std::string take() && {
    said_.resize(cutBetweenCharacters(said_, longestAccessibleDescription).size());
    return std::move(said_);
  }

 private:
  static bool isChoice(const ViewNode& node) {
    return std::holds_alternative<FirstThatFitsNode>(node) ||
           std::holds_alternative<ButtonNode>(node);
  }

  void say(const std::string& words) {
    if (words.empty()) return;
    if (!said_.empty()) said_ += ", ";
    said_ += words;
  }

  const std::string& drawingTime_;
  std::string said_;
};

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

View View::invalidatableContent() && {
  return modified(InvalidatableContentNode{}, std::move(*this));
}

View View::colourScheme(ColourScheme scheme) && {
  return modified(ColourSchemeNode{scheme}, std::move(*this));
}

View View::layoutPriority(double priority) && {
  return modified(LayoutPriorityNode{priority}, std::move(*this));
}

View View::alignmentGuide(HorizontalAlignment guide, double by) && {
  return modified(HorizontalGuideNode{guide, by}, std::move(*this));
}

View View::alignmentGuide(VerticalAlignment guide, double by) && {
  return modified(VerticalGuideNode{guide, by}, std::move(*this));
}

View View::accessible(std::string_view name) && {
  accessibleName = displayableText(name);
  return std::move(*this);
}

std::string accessibleDescription(const View& view, const std::string& drawingTime) {
  const View* const only = &view;
  return accessibleDescription(std::span(&only, 1), drawingTime);
}

std::string accessibleDescription(std::span<const View* const> views,
                                  const std::string& drawingTime) {
  Describer describer(drawingTime);
  for (const View* view : views) describer.add(*view);
  return std::move(describer).take();
}

}  // namespace lanternfold
