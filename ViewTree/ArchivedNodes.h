// What the archive holds of each kind of node: its name, its children and its members with their
// bounds, once for both directions.
//
// Read by: the encoder and the decoder, each with a visitor that has
//   text(name, std::string&)            url(name, std::string&)
//   optionalText(name, std::string&)
//   number(name, double&, NumberRule)   optionalNumber(name, std::optional<double>&, NumberRule)
//   count(name, std::size_t&, CountRule)
//   numbers(name, std::vector<double>&, NumberRule)
//   choice(name, Enumeration&, names, standard)
//   alignment(name, Alignment&)         colour(name, Colour&)
#pragma once

#include <string_view>

#include "ViewTree/ArchiveRules.h"
#include "ViewTree/View.h"

namespace lanternfold {

/// The numbers are in their order.
template <ArchivedChildren childrenOfKind>
struct ArchivedKind {
  static constexpr ArchivedChildren children = childrenOfKind;
  /// Of a kind without members of its own.
  template <typename Visitor, typename Node>
  static void visit(Visitor&, Node&) {}
};
using ArchivedLeaf = ArchivedKind<ArchivedChildren::none>;
using ArchivedModifier = ArchivedKind<ArchivedChildren::one>;
using ArchivedStack = ArchivedKind<ArchivedChildren::any>;

/// Specialised below for every kind of node: `type`, `children` and `visit(visitor, node)`, where
/// the node is const for the encoder.
template <typename Node>
struct ArchivedNode;

template <typename Visitor, typename FontOfNode>
void visitFont(Visitor& members, FontOfNode& font) {
  members.number("fontSize", font.size, extentRule);
  members.choice("fontWeight", font.weight, fontWeightNames, FontWeight::regular);
  members.choice("fontLeading", font.leading, fontLeadingNames, FontLeading::standard);
}

template <>
struct ArchivedNode<TextNode> : ArchivedLeaf {
  static constexpr std::string_view type = "text";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.text("text", node.text);
    visitFont(members, node.font);
    members.choice("truncation", node.truncation, truncationNames, Truncation::tail);
    members.number("minimumScale", node.minimumScale, fractionRule.unless(1));
    members.count("lineLimit", node.lineLimit, lineLimitRule);
    members.choice("alignment", node.alignment, horizontalNames, HorizontalAlignment::leading);
    members.optionalText("sizedWith", node.sizedWith);
  }
};

template <>
struct ArchivedNode<DrawingTimeNode> : ArchivedLeaf {
  static constexpr std::string_view type = "drawingTime";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.text("format", node.format);
    visitFont(members, node.font);
  }
};

template <>
struct ArchivedNode<SymbolNode> : ArchivedLeaf {
  static constexpr std::string_view type = "symbol";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.text("name", node.name);
    members.optionalNumber("pointSize", node.pointSize, extentRule);
    members.optionalNumber("strength", node.strength, fractionRule);
  }
};

template <>
struct ArchivedNode<ImageNode> : ArchivedLeaf {
  static constexpr std::string_view type = "image";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.text("name", node.name);
  }
};

template <>
struct ArchivedNode<CircleNode> : ArchivedLeaf {
  static constexpr std::string_view type = "circle";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.number("lineWidth", node.lineWidth, extentRule);
  }
};

template <>
struct ArchivedNode<RoundedRectangleNode> : ArchivedLeaf {
  static constexpr std::string_view type = "roundedRectangle";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.number("cornerRadius", node.cornerRadius, extentRule);
    members.colour("fill", node.fill);
  }
};

template <>
struct ArchivedNode<LinearGradientNode> : ArchivedLeaf {
  static constexpr std::string_view type = "linearGradient";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.colour("start", node.start);
    members.colour("end", node.end);
  }
};

template <>
struct ArchivedNode<EmptyNode> : ArchivedLeaf {
  static constexpr std::string_view type = "empty";
};

template <>
struct ArchivedNode<HStackNode> : ArchivedStack {
  static constexpr std::string_view type = "hstack";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.choice("alignment", node.alignment, verticalNames, VerticalAlignment::centre);
    members.number("spacing", node.spacing, lengthRule.unless(0));
  }
};

template <>
struct ArchivedNode<VStackNode> : ArchivedStack {
  static constexpr std::string_view type = "vstack";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.choice("alignment", node.alignment, horizontalNames, HorizontalAlignment::centre);
    members.number("spacing", node.spacing, lengthRule.unless(0));
  }
};

template <>
struct ArchivedNode<ZStackNode> : ArchivedStack {
  static constexpr std::string_view type = "zstack";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.alignment("alignment", node.alignment);
  }
};

template <>
struct ArchivedNode<FirstThatFitsNode> : ArchivedKind<ArchivedChildren::atLeastOne> {
  static constexpr std::string_view type = "firstThatFits";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.choice("axes", node.axes, fitAxesNames, FitAxes::both);
  }
};

template <>
struct ArchivedNode<WholeRowsNode> : ArchivedStack {
  static constexpr std::string_view type = "wholeRows";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.numbers("spacings", node.spacings, lengthRule);
    members.choice("alignment", node.alignment, horizontalNames, HorizontalAlignment::centre);
  }
};

template <>
struct ArchivedNode<WholeGridNode> : ArchivedStack {
  static constexpr std::string_view type = "wholeGrid";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.count("columns", node.columns, columnsRule);
    members.number("columnSpacing", node.columnSpacing, lengthRule.unless(0));
    members.number("rowSpacing", node.rowSpacing, lengthRule.unless(0));
    members.alignment("alignment", node.alignment);
  }
};

template <>
struct ArchivedNode<AccessoryRowNode> : ArchivedKind<ArchivedChildren::three> {
  static constexpr std::string_view type = "accessoryRow";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.choice("alignment", node.alignment, verticalNames, VerticalAlignment::centre);
    members.number("spacing", node.spacing, lengthRule.unless(0));
    members.number("besideLeading", node.besideLeading, extentRule.unless(0));
    members.number("besideBoth", node.besideBoth, extentRule.unless(0));
  }
};

template <>
struct ArchivedNode<FrameNode> : ArchivedModifier {
  static constexpr std::string_view type = "frame";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.optionalNumber("width", node.width.fixed, extentRule);
    members.optionalNumber("minimumWidth", node.width.minimum, extentRule);
    members.optionalNumber("idealWidth", node.width.ideal, extentRule);
    members.optionalNumber("maximumWidth", node.width.maximum, unboundedExtentRule);
    members.optionalNumber("height", node.height.fixed, extentRule);
    members.optionalNumber("minimumHeight", node.height.minimum, extentRule);
    members.optionalNumber("idealHeight", node.height.ideal, extentRule);
    members.optionalNumber("maximumHeight", node.height.maximum, unboundedExtentRule);
    members.alignment("alignment", node.alignment);
  }
};

template <>
struct ArchivedNode<PaddingNode> : ArchivedModifier {
  static constexpr std::string_view type = "padding";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.number("top", node.insets.top, lengthRule.unless(0));
    members.number("leading", node.insets.leading, lengthRule.unless(0));
    members.number("bottom", node.insets.bottom, lengthRule.unless(0));
    members.number("trailing", node.insets.trailing, lengthRule.unless(0));
  }
};

template <>
struct ArchivedNode<OffsetNode> : ArchivedModifier {
  static constexpr std::string_view type = "offset";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.number("x", node.by.x, lengthRule.unless(0));
    members.number("y", node.by.y, lengthRule.unless(0));
  }
};

template <>
struct ArchivedNode<BackgroundNode> : ArchivedKind<ArchivedChildren::two> {
  static constexpr std::string_view type = "background";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.alignment("alignment", node.alignment);
  }
};

template <>
struct ArchivedNode<OpacityNode> : ArchivedModifier {
  static constexpr std::string_view type = "opacity";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.number("light", node.light, fractionRule);
    members.number("dark", node.dark, fractionRule);
  }
};

template <>
struct ArchivedNode<ForegroundNode> : ArchivedModifier {
  static constexpr std::string_view type = "foreground";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.colour("colour", node.colour);
  }
};

template <>
struct ArchivedNode<ClipNode> : ArchivedModifier {
  static constexpr std::string_view type = "clip";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.number("cornerRadius", node.cornerRadius, extentRule.unless(0));
  }
};

template <>
struct ArchivedNode<ColourSchemeNode> : ArchivedModifier {
  static constexpr std::string_view type = "colourScheme";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.choice("scheme", node.scheme, colourSchemeNames, ColourScheme::light);
  }
};

template <>
struct ArchivedNode<InvalidatableContentNode> : ArchivedModifier {
  static constexpr std::string_view type = "invalidatableContent";
};

template <>
struct ArchivedNode<ButtonNode> : ArchivedKind<ArchivedChildren::oneOrTwo> {
  static constexpr std::string_view type = "button";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.text("intent", node.intent);
  }
};

template <>
struct ArchivedNode<LinkNode> : ArchivedModifier {
  static constexpr std::string_view type = "link";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.url("url", node.url);
  }
};

template <>
struct ArchivedNode<LayoutPriorityNode> : ArchivedModifier {
  static constexpr std::string_view type = "layoutPriority";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.number("priority", node.priority, lengthRule);
  }
};

template <>
struct ArchivedNode<HorizontalGuideNode> : ArchivedModifier {
  static constexpr std::string_view type = "horizontalGuide";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.choice("guide", node.guide, horizontalNames, HorizontalAlignment::leading);
    members.number("by", node.by, lengthRule.unless(0));
  }
};

template <>
struct ArchivedNode<VerticalGuideNode> : ArchivedModifier {
  static constexpr std::string_view type = "verticalGuide";
  template <typename Visitor, typename Node>
  static void visit(Visitor& members, Node& node) {
    members.choice("guide", node.guide, verticalNames, VerticalAlignment::top);
    members.number("by", node.by, lengthRule.unless(0));
  }
};

}  // namespace lanternfold
