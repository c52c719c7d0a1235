#include "ViewTree/FittedText.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "ViewTree/ShortenedText.h"

namespace lanternfold {
namespace {

/// Room for heights that are equal but for rounding.
constexpr double tolerance = 0.001;

/// Of what has to fit the place in one font.
double widestOf(const TextNode& node, double width, const TextMeasurer& measurer) {
  if (node.sizedWith.empty() || node.lineLimit > 1 || node.minimumScale >= 1) return width;
  return std::max(width, measurer.measure(node.sizedWith, node.font).width);
}

/// How many lines of `height` have room in what is offered.
std::size_t linesWithin(const TextNode& node, double height, std::optional<double> offered) {
  if (node.lineLimit <= 1 || !offered || height <= 0) return node.lineLimit;
  const double room = (*offered + tolerance) / height;
  if (room >= static_cast<double>(node.lineLimit)) return node.lineLimit;
  return room < 1 ? 1 : static_cast<std::size_t>(room);
}

void wrap(const TextNode& node, double width, std::size_t lineLimit, const TextWidth& widthOf,
          FittedText& fitted) {
  const std::vector<WrappedLine> lines =
      wrappedText(node.text, node.truncation, width, lineLimit, widthOf);
  fitted.lines.clear();
  for (const WrappedLine& line : lines) fitted.lines.push_back({line.text, 0});
  fitted.text = node.text.substr(0, lines.back().start) + lines.back().text;
}

}  // namespace

FittedText fittedText(const TextNode& node, const ProposedSize& offer,
                      const TextMeasurer& measurer) {
  const Size whole = measurer.measure(node.text, node.font);
  FittedText fitted{
      node.text, {{node.text, whole.width}}, node.font, whole, measurer.baseline(node.font)};
  if (!offer.width) return fitted;
  const double widest = widestOf(node, whole.width, measurer);
  if (widest <= *offer.width) return fitted;
  if (node.lineLimit <= 1 && node.minimumScale < 1) {
    // A little less than the ratio says, because letters do not scale to the last bit.
    const double scale = std::max(node.minimumScale, 0.99 * *offer.width / widest);
    fitted.font.size = node.font.size * scale;
  }
  const auto widthOf = [&](std::string_view text) {
    return measurer.measure(text, fitted.font).width;
  };
  const std::size_t limit = linesWithin(node, whole.height, offer.height);
  if (limit <= 1) {
    fitted.text = shortenedText(node.text, node.truncation, *offer.width, widthOf);
    fitted.lines = {{fitted.text, 0}};
  } else {
    wrap(node, *offer.width, limit, widthOf, fitted);
  }
  fitted.size.width = 0;
  for (FittedLine& line : fitted.lines) {
    line.width = widthOf(line.text);
    fitted.size.width = std::max(fitted.size.width, line.width);
  }
  // A smaller font stands in the middle of the line.
  const double height = measurer.measure(fitted.lines.front().text, fitted.font).height;
  fitted.firstBaseline = (whole.height - height) / 2 + measurer.baseline(fitted.font);
  fitted.size.height = whole.height * static_cast<double>(fitted.lines.size());
  return fitted;
}

}  // namespace lanternfold
