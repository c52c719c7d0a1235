#include "ViewTree/FittedText.h"

#include <algorithm>
#include <string_view>

#include "ViewTree/DisplayableText.h"

namespace lanternfold {

FittedText fittedText(const TextNode& node, std::optional<double> width,
                      const TextMeasurer& measurer) {
  FittedText fitted{node.text, node.font, measurer.measure(node.text, node.font)};
  if (!width || fitted.size.width <= *width) return fitted;
  if (node.minimumScale < 1) {
    // A little less than the ratio says, because letters do not scale to the last bit.
    const double scale = std::max(node.minimumScale, 0.99 * *width / fitted.size.width);
    fitted.font.size = node.font.size * scale;
  }
  fitted.text = shortenedText(node.text, node.truncation, *width, [&](std::string_view text) {
    return measurer.measure(text, fitted.font).width;
  });
  fitted.size.width = measurer.measure(fitted.text, fitted.font).width;
  return fitted;
}

}  // namespace lanternfold
