// What a view may be: a record for each kind of node, and the variant of them all.
//
// Made by: the functions of ViewTree/Elements.h. Read by: whoever walks a view.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "ViewTree/Colour.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/TextMeasurer.h"

namespace lanternfold {

/// Where a text that is too long for its place is shortened.
enum class Truncation { middle, tail };

struct TextNode {
  std::string text;  ///< one paragraph of valid UTF-8
  Font font;
  Truncation truncation = Truncation::tail;
  /// How far the font of a single line may shrink before the text is shortened: 1 for not at all.
  double minimumScale = 1;
  /// The lines into which the text may be broken where it is too wide, the last of them shortened.
  std::size_t lineLimit = 1;
  /// Where shorter lines stand among longer ones.
  HorizontalAlignment alignment = HorizontalAlignment::leading;
  /// Where the font of a single line may shrink, it does so as if this were to fit as well: texts
  /// of each other in places of one width are of one size. Empty for none; is not shown.
  std::string sizedWith;
  friend bool operator==(const TextNode&, const TextNode&) = default;
};

/// A text with the time of drawing in place of the format's "%@".
struct DrawingTimeNode {
  std::string format;
  Font font;
  friend bool operator==(const DrawingTimeNode&, const DrawingTimeNode&) = default;
};

/// A symbol drawn in the foreground colour. Without a point size it fills its frame.
struct SymbolNode {
  std::string name;
  std::optional<double> pointSize;
  /// Of a symbol that shows one: 0 to 1, how many of its bars are lit.
  std::optional<double> strength;
  friend bool operator==(const SymbolNode&, const SymbolNode&) = default;
};

/// A picture asset in its own colours, stretched to its frame.
struct ImageNode {
  std::string name;
  friend bool operator==(const ImageNode&, const ImageNode&) = default;
};

/// A circle in the middle of its frame, stroked inside it in the foreground colour.
struct CircleNode {
  double lineWidth = 1;
  friend bool operator==(const CircleNode&, const CircleNode&) = default;
};

struct RoundedRectangleNode {
  double cornerRadius = 0;
  Colour fill;
  friend bool operator==(const RoundedRectangleNode&, const RoundedRectangleNode&) = default;
};

/// From top to bottom.
struct LinearGradientNode {
  Colour start;
  Colour end;
  friend bool operator==(const LinearGradientNode&, const LinearGradientNode&) = default;
};

/// Takes no room and draws nothing.
struct EmptyNode {
  friend bool operator==(const EmptyNode&, const EmptyNode&) = default;
};

struct HStackNode {
  VerticalAlignment alignment = VerticalAlignment::centre;
  double spacing = 0;
  friend bool operator==(const HStackNode&, const HStackNode&) = default;
};

struct VStackNode {
  HorizontalAlignment alignment = HorizontalAlignment::centre;
  double spacing = 0;
  friend bool operator==(const VStackNode&, const VStackNode&) = default;
};

struct ZStackNode {
  Alignment alignment;
  friend bool operator==(const ZStackNode&, const ZStackNode&) = default;
};

/// The dimensions in which a choice must fit.
enum class FitAxes { horizontal, vertical, both };

/// The first child whose ideal size fits what is offered, else the last one.
struct FirstThatFitsNode {
  FitAxes axes = FitAxes::both;
  friend bool operator==(const FirstThatFitsNode&, const FirstThatFitsNode&) = default;
};

/// Rows one below the other, none of them cut: all with the first of the spacings at which they fit
/// the height that is offered, else as many of the first ones as fit at the last spacing, at least
/// one. A choice of stacks would say the same, and hold every row many times.
struct WholeRowsNode {
  std::vector<double> spacings;  ///< the widest first, at least one
  HorizontalAlignment alignment = HorizontalAlignment::centre;
  friend bool operator==(const WholeRowsNode&, const WholeRowsNode&) = default;
};

/// Cells in rows of `columns` each, from the leading end and from the top; those of a last row that
/// is not full share its width. None of the rows is cut. How they share the room, and which of them
/// are shown, says `wholeRowHeights` (ViewTree/LayoutArithmetic.h).
struct WholeGridNode {
  std::size_t columns = 1;  ///< at least one
  double columnSpacing = 0;
  double rowSpacing = 0;
  /// Where a cell stands that takes less than its share of the width or its row's height.
  Alignment alignment = topLeading;
  friend bool operator==(const WholeGridNode&, const WholeGridNode&) = default;
};

/// A content between two accessories that step aside, the trailing one first, where the content
/// would get too little room. What it loses to an accessory in a wider row it does not get in a
/// narrower one, so that it never shows less in more room: without the trailing accessory it is
/// offered `besideBoth` at the most, without both `besideLeading`. An empty view is no accessory.
struct AccessoryRowNode {
  VerticalAlignment alignment = VerticalAlignment::centre;
  double spacing = 0;
  double besideLeading = 0;  ///< the content's least width beside the leading accessory
  double besideBoth = 0;     ///< its least width beside both, not below the other one
  friend bool operator==(const AccessoryRowNode&, const AccessoryRowNode&) = default;
};

/// One dimension of a frame: a fixed length, or bounds and an ideal, each optional.
struct FrameLength {
  std::optional<double> fixed;
  std::optional<double> minimum;
  std::optional<double> ideal;
  std::optional<double> maximum;
  friend bool operator==(const FrameLength&, const FrameLength&) = default;
};

struct FrameNode {
  FrameLength width;
  FrameLength height;
  Alignment alignment;
  friend bool operator==(const FrameNode&, const FrameNode&) = default;
};

struct PaddingNode {
  EdgeInsets insets;
  friend bool operator==(const PaddingNode&, const PaddingNode&) = default;
};

/// Moves what is drawn, not the room it takes.
struct OffsetNode {
  Point by;
  friend bool operator==(const OffsetNode&, const OffsetNode&) = default;
};

/// Two children: the content and what stands behind it, offered the content's size.
struct BackgroundNode {
  Alignment alignment;
  friend bool operator==(const BackgroundNode&, const BackgroundNode&) = default;
};

/// Multiplies the opacity of everything below, by the colour scheme.
struct OpacityNode {
  double light = 1;
  double dark = 1;
  friend bool operator==(const OpacityNode&, const OpacityNode&) = default;
};

struct ForegroundNode {
  Colour colour;
  friend bool operator==(const ForegroundNode&, const ForegroundNode&) = default;
};

/// Cuts off what the child draws outside its frame, whose corners are rounded.
struct ClipNode {
  double cornerRadius = 0;
  friend bool operator==(const ClipNode&, const ClipNode&) = default;
};

/// Everything below is painted in this scheme, whatever that of the picture.
struct ColourSchemeNode {
  ColourScheme scheme = ColourScheme::light;
  friend bool operator==(const ColourSchemeNode&, const ColourSchemeNode&) = default;
};

/// What becomes doubtful as soon as something newer is asked for: the child is painted fainter
/// while whoever draws it waits for that.
struct InvalidatableContentNode {
  friend bool operator==(const InvalidatableContentNode&,
                         const InvalidatableContentNode&) = default;
};

/// The first child is the button's face, the second, where there is one, that while it is pressed;
/// a press performs the intent of that name.
struct ButtonNode {
  std::string intent;
  friend bool operator==(const ButtonNode&, const ButtonNode&) = default;
};

/// A tap on the child opens the URL.
struct LinkNode {
  std::string url;  ///< as `isLinkUrl` asks for (ViewTree/LinkUrl.h)
  friend bool operator==(const LinkNode&, const LinkNode&) = default;
};

/// Stands before its siblings of lower priority when a stack shares out its room.
struct LayoutPriorityNode {
  double priority = 0;
  friend bool operator==(const LayoutPriorityNode&, const LayoutPriorityNode&) = default;
};

/// Moves the line by which the stack around it aligns the child, from where that would be.
struct HorizontalGuideNode {
  HorizontalAlignment guide = HorizontalAlignment::leading;
  double by = 0;  ///< towards the trailing end
  friend bool operator==(const HorizontalGuideNode&, const HorizontalGuideNode&) = default;
};
struct VerticalGuideNode {
  VerticalAlignment guide = VerticalAlignment::top;
  double by = 0;  ///< downwards
  friend bool operator==(const VerticalGuideNode&, const VerticalGuideNode&) = default;
};

using ViewNode =
    std::variant<TextNode, DrawingTimeNode, SymbolNode, ImageNode, CircleNode, RoundedRectangleNode,
                 LinearGradientNode, EmptyNode, HStackNode, VStackNode, ZStackNode,
                 FirstThatFitsNode, WholeRowsNode, WholeGridNode, AccessoryRowNode, FrameNode,
                 PaddingNode, OffsetNode, BackgroundNode, OpacityNode, ForegroundNode, ClipNode,
                 ColourSchemeNode, InvalidatableContentNode, ButtonNode, LinkNode,
                 LayoutPriorityNode, HorizontalGuideNode, VerticalGuideNode>;

}  // namespace lanternfold
