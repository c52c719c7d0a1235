// The card at every width a desktop could give it.
#include <map>
#include <optional>
#include <string>

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
    if (std::holds_alternative<OffsetNode>(child.node)) continue;
    if (!isInside(child.frame, view.frame)) return textDump(view);
    if (std::string stray = firstStray(child); !stray.empty()) return stray;
  }
  return "";
}

/// A shortened text shows all its bytes but the three of the ellipsis.
double shownBytes(const LaidOutView& view, const std::string& whole) {
  const std::size_t ellipsis = view.shownText.empty() || view.shownText == whole ? 0 : 3;
  return static_cast<double>(view.shownText.size() - ellipsis);
}

/// The sentence that `view` shows on several lines, none for another view; where its lines break
/// depends on the width.
std::optional<std::string> sentenceOnLines(const LaidOutView& view) {
  if (view.accessibleDescription.empty() || view.children.size() < 2) return std::nullopt;
  std::string sentence;
  for (const LaidOutView& child : view.children) {
    const auto* line = std::get_if<TextNode>(&child.node);
    if (line == nullptr) return std::nullopt;
    sentence.append(sentence.empty() ? "" : " ").append(line->text);
  }
  return sentence;
}

/// How much is shown of each text and symbol, by what it says whole.
void addShown(const LaidOutView& view, std::map<std::string, double>& shown) {
  if (const auto sentence = sentenceOnLines(view)) {
    for (const LaidOutView& line : view.children) {
      shown[*sentence] += shownBytes(line, std::get<TextNode>(line.node).text);
    }
    return;
  }
  if (const auto* symbol = std::get_if<SymbolNode>(&view.node)) {
    shown[symbol->name] += view.frame.size.width;
  } else if (const auto* whole = std::get_if<TextNode>(&view.node)) {
    shown[whole->text] += shownBytes(view, whole->text);
  }
  for (const LaidOutView& child : view.children) addShown(child, shown);
}

class CardSweep : public testing::TestWithParam<CardState> {
 protected:
  static LaidOutView card(double width) { return GetParam().laidOut(width); }
};

TEST_P(CardSweep, NothingLeavesItsParent) {
  for (int width = 0; width <= widestSweep; ++width) {
    ASSERT_EQ(firstStray(card(width)), "") << "at width " << width;
  }
}

TEST_P(CardSweep, AWiderCardNeverShowsLess) {
  std::map<std::string, double> before;
  for (int width = 0; width <= widestSweep; ++width) {
    std::map<std::string, double> now;
    addShown(card(width), now);
    for (const auto& [what, amount] : before) {
      ASSERT_GE(now[what], amount) << '"' << what << "\" at width " << width;
    }
    before = now;
  }
}

/// The frame of the gradient below `view`.
std::optional<Rect> gradientFrame(const LaidOutView& view) {
  if (std::holds_alternative<LinearGradientNode>(view.node)) return view.frame;
  for (const LaidOutView& child : view.children) {
    if (const std::optional<Rect> found = gradientFrame(child)) return found;
  }
  return std::nullopt;
}

// The logo, wider than a narrow card, once pushed the gradient out of the picture.
TEST_P(CardSweep, TheBackgroundAlwaysFillsThePicture) {
  for (int width = 0; width <= widestSweep; ++width) {
    ASSERT_EQ(gradientFrame(card(width)), (Rect{{0, 0}, {static_cast<double>(width), 170}}));
  }
}

INSTANTIATE_TEST_SUITE_P(States, CardSweep, testing::ValuesIn(cardStates()),
                         [](const auto& state) { return state.param.name; });

}  // namespace
}  // namespace lanternfold
