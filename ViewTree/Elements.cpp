#include "ViewTree/Elements.h"

#include <utility>

#include "Support/FatalError.h"
#include "ViewTree/DisplayableText.h"
#include "ViewTree/LinkUrl.h"

namespace lanternfold {
namespace {

View leaf(ViewNode node) { return {std::move(node), {}, std::nullopt}; }

View around(ViewNode node, View content) {
  std::vector<View> children;
  children.push_back(std::move(content));
  return {std::move(node), std::move(children), std::nullopt};
}

}  // namespace

View text(std::string_view content, const TextStyle& style) {
  return leaf(TextNode{displayableText(content), style.font, style.truncation, style.minimumScale,
                       style.lineLimit, style.alignment, displayableText(style.sizedWith)});
}

View drawingTime(std::string_view format, const Font& font) {
  return leaf(DrawingTimeNode{displayableText(format), font});
}

View symbol(std::string name) { return symbol(std::move(name), SymbolStyle{}); }

View symbol(std::string name, double pointSize) {
  return symbol(std::move(name), SymbolStyle{pointSize, std::nullopt});
}

View symbol(std::string name, const SymbolStyle& style) {
  return leaf(SymbolNode{std::move(name), style.pointSize, style.strength});
}

View image(std::string name) { return leaf(ImageNode{std::move(name)}); }

View circle(double lineWidth) { return leaf(CircleNode{lineWidth}); }

View roundedRectangle(double cornerRadius, Colour fill) {
  return leaf(RoundedRectangleNode{cornerRadius, std::move(fill)});
}

View linearGradient(Colour start, Colour end) {
  return leaf(LinearGradientNode{std::move(start), std::move(end)});
}

View emptyView() { return leaf(EmptyNode{}); }

View hstack(VerticalAlignment alignment, double spacing, std::vector<View> children) {
  return {HStackNode{alignment, spacing}, std::move(children), std::nullopt};
}

View vstack(HorizontalAlignment alignment, double spacing, std::vector<View> children) {
  return {VStackNode{alignment, spacing}, std::move(children), std::nullopt};
}

View zstack(Alignment alignment, std::vector<View> children) {
  return {ZStackNode{alignment}, std::move(children), std::nullopt};
}

View firstThatFits(FitAxes axes, std::vector<View> choices) {
  if (choices.empty()) fatalError("a choice of views was made without a view to choose");
  return {FirstThatFitsNode{axes}, std::move(choices), std::nullopt};
}

View wholeRows(HorizontalAlignment alignment, std::vector<double> spacings,
               std::vector<View> rows) {
  if (spacings.empty()) fatalError("rows of views were made without a spacing");
  return {WholeRowsNode{std::move(spacings), alignment}, std::move(rows), std::nullopt};
}

View wholeGrid(const WholeGridNode& grid, std::vector<View> cells) {
  if (grid.columns == 0) fatalError("a grid of views was made without a column");
  return {grid, std::move(cells), std::nullopt};
}

View accessoryRow(const AccessoryRowNode& row, View leading, View content, View trailing) {
  if (row.besideBoth < row.besideLeading) {
    fatalError("a content was to have less room beside two accessories than beside one");
  }
  std::vector<View> parts;
  parts.push_back(std::move(leading));
  parts.push_back(std::move(content));
  parts.push_back(std::move(trailing));
  return {row, std::move(parts), std::nullopt};
}

View button(std::string intent, View face) {
  return around(ButtonNode{std::move(intent)}, std::move(face));
}

View button(std::string intent, View face, View pressedFace) {
  View result = button(std::move(intent), std::move(face));
  result.children.push_back(std::move(pressedFace));
  return result;
}

View link(std::string url, View content) {
  if (!isLinkUrl(url)) return content;
  return around(LinkNode{std::move(url)}, std::move(content));
}

}  // namespace lanternfold
