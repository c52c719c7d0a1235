// The card at every width a desktop could give it.
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

constexpr int widestSweep = 400;

bool isInside(const Rect& inner, const Rect& outer) {
  constexpr double tolerance = 0.01;
  return inner.left() >= outer.left() - tolerance && inner.top() >= outer.top() - tolerance &&
         inner.right() <= outer.right() + tolerance && inner.bottom() <= outer.bottom() + tolerance;
}

/// The first view that leaves its parent, as text; "" when none does. What an offset moves is
/// meant to leave its place.
std::string firstStray(const LaidOutView& view) {
  for (const LaidOutView& child : view.children) {
    const bool isMoved = std::holds_alternative<OffsetNode>(view.node) ||
                         std::holds_alternative<OffsetNode>(child.node);
    if (!isMoved && !isInside(child.frame, view.frame)) return textDump(view);
    if (std::string stray = firstStray(child); !stray.empty()) return stray;
  }
  return "";
}

/// How much is shown of a text: the characters that are not behind an ellipsis or on no line.
double shownCharacters(const LaidOutView& view) {
  std::string shown;
  for (const ShownLine& line : view.shownLines) shown += line.text;
  const std::string ellipsis = "\u2026";
  for (auto cut = shown.find(ellipsis); cut != std::string::npos; cut = shown.find(ellipsis)) {
    shown.erase(cut, ellipsis.size());
  }
  // A space at which a line is broken is not shown, and nobody misses it.
  std::erase(shown, ' ');
  return static_cast<double>(shown.size());
}

/// How much is shown of each text and symbol, by what it says whole.
void addShown(const LaidOutView& view, std::map<std::string, double>& shown) {
  if (const auto* symbol = std::get_if<SymbolNode>(&view.node)) {
    shown[symbol->name] += view.frame.size.width;
  } else if (const auto* whole = std::get_if<TextNode>(&view.node)) {
    shown[whole->text] += shownCharacters(view);
  }
  for (const LaidOutView& child : view.children) addShown(child, shown);
}

/// The frames of the lines of text, of the symbols and of the meters that are shown. Tight lines,
/// which stand in the meters, are left out.
void addInk(const LaidOutView& view, std::vector<std::pair<std::string, Rect>>& ink) {
  if (std::holds_alternative<SymbolNode>(view.node)) ink.emplace_back("a symbol", view.frame);
  if (std::holds_alternative<CircleNode>(view.node)) ink.emplace_back("a meter", view.frame);
  if (view.shownFont.leading == FontLeading::standard) {
    for (const ShownLine& line : view.shownLines) {
      if (!line.text.empty()) ink.emplace_back(line.text, line.frame);
    }
  }
  for (const LaidOutView& child : view.children) addInk(child, ink);
}

bool overlap(const Rect& one, const Rect& other) {
  constexpr double tolerance = 0.01;
  return one.left() < other.right() - tolerance && other.left() < one.right() - tolerance &&
         one.top() < other.bottom() - tolerance && other.top() < one.bottom() - tolerance;
}

/// The first two pieces that stand on one another; "" when none do.
std::string firstOverlap(const LaidOutView& view) {
  std::vector<std::pair<std::string, Rect>> ink;
  addInk(view, ink);
  for (std::size_t index = 0; index < ink.size(); ++index) {
    for (std::size_t before = 0; before < index; ++before) {
      if (overlap(ink[index].second, ink[before].second)) {
        return ink[before].first + " under " + ink[index].first;
      }
    }
  }
  return "";
}

/// The frame of the gradient below `view`.
std::optional<Rect> gradientFrame(const LaidOutView& view) {
  if (std::holds_alternative<LinearGradientNode>(view.node)) return view.frame;
  for (const LaidOutView& child : view.children) {
    if (const std::optional<Rect> found = gradientFrame(child)) return found;
  }
  return std::nullopt;
}

/// What is less in `now` than it was `before`; "" when nothing is.
std::string firstLoss(const std::map<std::string, double>& before,
                      const std::map<std::string, double>& now) {
  for (const auto& [what, amount] : before) {
    const auto left = now.find(what);
    if (amount > (left == now.end() ? 0 : left->second)) return what;
  }
  return "";
}

class CardSweep : public testing::TestWithParam<CardState> {};

// The logo, wider than a narrow card, once pushed the gradient out of the picture; the time of
// drawing once stood on the last row of a full card. A card that is far narrower than any widget
// has its first letters below the button.
TEST_P(CardSweep, IsInOrderAtEveryWidthAndNeverShowsLessInMore) {
  const Size natural = widgetSize(GetParam().family);
  const bool hasGradient = gradientFrame(GetParam().laidOut()).has_value();
  std::map<std::string, double> before;
  for (int width = 0; width <= widestSweep; ++width) {
    SCOPED_TRACE("width " + std::to_string(width));
    const LaidOutView card = GetParam().laidOut(width);
    ASSERT_EQ(firstStray(card), "");
    if (width >= 0.7 * natural.width) {
      ASSERT_EQ(firstOverlap(card), "");
    }
    const Rect whole{{0, 0}, {static_cast<double>(width), natural.height}};
    if (hasGradient) {
      ASSERT_EQ(gradientFrame(card), whole);
    }
    std::map<std::string, double> now;
    addShown(card, now);
    ASSERT_EQ(firstLoss(before, now), "");
    before = std::move(now);
  }
}

INSTANTIATE_TEST_SUITE_P(States, CardSweep, testing::ValuesIn(cardStates()),
                         [](const auto& state) { return state.param.name; });

}  // namespace
}  // namespace lanternfold
