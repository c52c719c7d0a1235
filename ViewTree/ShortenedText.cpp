#include "ViewTree/ShortenedText.h"

#include <algorithm>
#include <iterator>

#include "Support/TextBreaks.h"

namespace lanternfold {
namespace {

constexpr std::string_view ellipsis = "\u2026";

/// The greatest of the numbers from `least` to `most` for which `holds`; `least` is taken to. What
/// holds for a number holds for all below.
template <typename Predicate>
std::size_t greatest(std::size_t least, std::size_t most, const Predicate& holds) {
  while (least < most) {
    const std::size_t middle = least + (most - least + 1) / 2;
    if (holds(middle)) {
      least = middle;
    } else {
      most = middle - 1;
    }
  }
  return least;
}

/// `kept` characters of the text and an ellipsis in place of the others.
std::string withEllipsis(std::string_view text, const std::vector<std::size_t>& cuts,
                         Truncation truncation, std::size_t kept) {
  const std::size_t atTheEnd = truncation == Truncation::middle ? kept / 2 : 0;
  const std::size_t head = cuts[kept - atTheEnd];
  const std::size_t tail = cuts[cuts.size() - 1 - atTheEnd];
  return std::string(text.substr(0, head)).append(ellipsis).append(text.substr(tail));
}

std::string_view withoutSpacesBehind(std::string_view line) {
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

class LineFiller {
 public:
  LineFiller(std::string_view text, double width, const TextWidth& widthOf)
      : text_(text), width_(width), widthOf_(widthOf), opportunities_(lineBreaks(text)) {}

  /// Where the line that begins at `start` ends; `start` itself when it holds nothing.
  std::size_t endOfLine(std::size_t start) {
    const std::size_t end = furthest(start, opportunities_);
    if (end != start) return end;
    if (characters_.empty()) characters_ = characterBreaks(text_);
    return furthest(start, characters_);
  }

 private:
  /// The last of `places` up to which what begins at `start` is no wider than a line.
  std::size_t furthest(std::size_t start, const std::vector<std::size_t>& places) const {
    const auto next = std::ranges::upper_bound(places, start);
    const std::size_t count = greatest(
        0, static_cast<std::size_t>(std::distance(next, places.end())), [&](std::size_t taken) {
          const std::size_t end = *(next + static_cast<std::ptrdiff_t>(taken) - 1);
          return widthOf_(withoutSpacesBehind(text_.substr(start, end - start))) <= width_;
        });
    return count == 0 ? start : *(next + static_cast<std::ptrdiff_t>(count) - 1);
  }

  std::string_view text_;
  double width_;
  const TextWidth& widthOf_;
  std::vector<std::size_t> opportunities_;
  std::vector<std::size_t> characters_;
};

}  // namespace

std::string shortenedText(std::string_view text, Truncation truncation, double width,
                          const TextWidth& widthOf) {
  if (widthOf(text) <= width) return std::string(text);
  if (widthOf(ellipsis) > width) return {};
  const std::vector<std::size_t> cuts = characterBreaks(text);
  const std::size_t kept = greatest(0, cuts.size() - 2, [&](std::size_t count) {
    return widthOf(withEllipsis(text, cuts, truncation, count)) <= width;
  });
  return withEllipsis(text, cuts, truncation, kept);
}

std::vector<WrappedLine> wrappedText(std::string_view text, Truncation truncation, double width,
                                     std::size_t lineLimit, const TextWidth& widthOf) {
  LineFiller filler(text, width, widthOf);
  std::vector<WrappedLine> lines;
  std::size_t start = 0;
  while (lines.size() + 1 < lineLimit) {
    const std::size_t end = filler.endOfLine(start);
    if (end == start || end == text.size()) break;
    lines.push_back({start, std::string(withoutSpacesBehind(text.substr(start, end - start)))});
    start = end;
  }
  const std::string_view rest = withoutSpacesBehind(text.substr(start));
  lines.push_back({start, shortenedText(rest, truncation, width, widthOf)});
  return lines;
}

}  // namespace lanternfold
