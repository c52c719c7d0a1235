#include "ViewTree/TextDump.h"

#include <cstddef>
#include <variant>

#include "ViewTree/DumpFigures.h"

namespace lanternfold {
namespace {

std::string name(HorizontalAlignment alignment) {
  if (alignment == HorizontalAlignment::leading) return "leading";
  return alignment == HorizontalAlignment::centre ? "centre" : "trailing";
}

std::string name(VerticalAlignment alignment) {
  if (alignment == VerticalAlignment::top) return "top";
  if (alignment == VerticalAlignment::firstTextBaseline) return "first-baseline";
  return alignment == VerticalAlignment::centre ? "centre" : "bottom";
}

std::string name(Alignment alignment) {
  return name(alignment.vertical) + '-' + name(alignment.horizontal);
}

std::string dumpedLength(const char* dimension, const FrameLength& length) {
  std::string text;
  const auto add = [&](const char* bound, const std::optional<double>& value) {
    if (value) text += std::string(" ") + bound + dimension + ' ' + dumped(*value);
  };
  add("", length.fixed);
  add("min-", length.minimum);
  add("ideal-", length.ideal);
  add("max-", length.maximum);
  return text;
}

/// A node's kind and its own figures.
struct Describer {
  std::string kind;
  std::string figures;

  void operator()(const TextNode& node) {
    kind = "text";
    if (node.truncation == Truncation::middle) figures += " middle";
    if (node.minimumScale != 1) figures += " down-to " + dumped(node.minimumScale);
    if (node.lineLimit != 1) figures += " lines " + std::to_string(node.lineLimit);
    if (node.alignment != HorizontalAlignment::leading) figures += ' ' + name(node.alignment);
    if (!node.sizedWith.empty()) figures += " with " + quoted(node.sizedWith);
  }
  void operator()(const DrawingTimeNode& node) {
    kind = "drawing-time";
    figures = " of " + quoted(node.format);
  }
  void operator()(const SymbolNode& node) {
    kind = "symbol";
    figures = ' ' + node.name + dumpedStrength(node.strength);
    if (node.pointSize) figures += " size " + dumped(*node.pointSize);
  }
  void operator()(const ImageNode& node) {
    kind = "image";
    figures = ' ' + node.name;
  }
  void operator()(const CircleNode& node) {
    kind = "circle";
    figures = " line " + dumped(node.lineWidth);
  }
  void operator()(const RoundedRectangleNode& node) {
    kind = "rounded-rectangle";
    figures = " radius " + dumped(node.cornerRadius) + " fill " + dumped(node.fill);
  }
  void operator()(const LinearGradientNode& node) {
    kind = "linear-gradient";
    figures = ' ' + dumped(node.start) + " to " + dumped(node.end);
  }
  void operator()(const EmptyNode&) { kind = "empty"; }
  void operator()(const HStackNode& node) {
    kind = "hstack";
    figures = ' ' + name(node.alignment) + " spacing " + dumped(node.spacing);
  }
  void operator()(const VStackNode& node) {
    kind = "vstack";
    figures = ' ' + name(node.alignment) + " spacing " + dumped(node.spacing);
  }
  void operator()(const ZStackNode& node) {
    kind = "zstack";
    figures = ' ' + name(node.alignment);
  }
  void operator()(const FirstThatFitsNode& node) {
    kind = "first-that-fits";
    if (node.axes == FitAxes::horizontal) figures = " across";
    if (node.axes == FitAxes::vertical) figures = " down";
  }
  void operator()(const WholeRowsNode& node) {
    kind = "whole-rows";
    figures = ' ' + name(node.alignment) + " spacing";
    for (const double spacing : node.spacings) figures += ' ' + dumped(spacing);
  }
  void operator()(const WholeGridNode& node) {
    kind = "whole-grid";
    figures = " columns " + std::to_string(node.columns) + " spacing " +
              dumped(node.columnSpacing) + ' ' + dumped(node.rowSpacing) + ' ' +
              name(node.alignment);
  }
  void operator()(const AccessoryRowNode& node) {
    kind = "accessory-row";
    figures = ' ' + name(node.alignment) + " spacing " + dumped(node.spacing) + " beside " +
              dumped(node.besideLeading) + ' ' + dumped(node.besideBoth);
  }
  void operator()(const FrameNode& node) {
    kind = "frame";
    figures = dumpedLength("width", node.width) + dumpedLength("height", node.height) + ' ' +
              name(node.alignment);
  }
  void operator()(const PaddingNode& node) {
    kind = "padding";
    const EdgeInsets& insets = node.insets;
    figures = ' ' + dumped(insets.top) + ' ' + dumped(insets.leading) + ' ' +
              dumped(insets.bottom) + ' ' + dumped(insets.trailing);
  }
  void operator()(const OffsetNode& node) {
    kind = "offset";
    figures = ' ' + dumped(node.by.x) + ',' + dumped(node.by.y);
  }
  void operator()(const BackgroundNode& node) {
    kind = "background";
    figures = ' ' + name(node.alignment);
  }
  void operator()(const OpacityNode& node) {
    kind = "opacity";
    figures = ' ' + dumped(node.light) + " dark " + dumped(node.dark);
  }
  void operator()(const ForegroundNode& node) {
    kind = "foreground";
    figures = ' ' + dumped(node.colour);
  }
  void operator()(const ClipNode& node) {
    kind = "clip";
    figures = " radius " + dumped(node.cornerRadius);
  }
  void operator()(const ColourSchemeNode& node) {
    kind = "colour-scheme";
    figures = node.scheme == ColourScheme::light ? " light" : " dark";
  }
  void operator()(const InvalidatableContentNode&) { kind = "invalidatable-content"; }
  void operator()(const ButtonNode& node) {
    kind = "button";
    figures = ' ' + node.intent;
  }
  void operator()(const LinkNode& node) {
    kind = "link";
    figures = ' ' + node.url;
  }
  void operator()(const HorizontalGuideNode& node) {
    kind = "horizontal-guide";
    figures = ' ' + name(node.guide) + " by " + dumped(node.by);
  }
  void operator()(const VerticalGuideNode& node) {
    kind = "vertical-guide";
    figures = ' ' + name(node.guide) + " by " + dumped(node.by);
  }
  void operator()(const LayoutPriorityNode& node) {
    kind = "layout-priority";
    figures = ' ' + dumped(node.priority);
  }
};

void addNode(const LaidOutView& view, std::size_t depth, std::string& dump) {
  Describer describer;
  std::visit(describer, view.node);
  dump +=
      std::string(depth * 2, ' ') + describer.kind + ' ' + dumped(view.frame) + describer.figures;
  if (!view.shownText.empty()) {
    dump += ' ' + dumped(view.shownFont);
    for (const ShownLine& line : view.shownLines) {
      dump += (&line == &view.shownLines.front() ? " " : " / ") + quoted(line.text);
    }
  }
  if (view.accessibleDescription != view.shownText) {
    dump += " -- " + quoted(view.accessibleDescription);
  }
  dump += '\n';
  for (const LaidOutView& child : view.children) addNode(child, depth + 1, dump);
}

}  // namespace

std::string textDump(const LaidOutView& view) {
  std::string dump;
  addNode(view, 0, dump);
  return dump;
}

}  // namespace lanternfold
