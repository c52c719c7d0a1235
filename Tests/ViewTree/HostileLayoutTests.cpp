// Views that an archive may hold and no widget would: each is laid out in a bounded number of steps
// and bytes, however they are nested.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/ViewTree/LaidOut.h"
#include "Tests/ViewTree/ViewSamples.h"
#include "ViewTree/DrawList.h"
#include "ViewTree/LayoutPass.h"
#include "ViewTree/PlainText.h"
#include "ViewTree/ViewArchive.h"

namespace lanternfold {
namespace {

/// Counts what it is asked, in texts and in bytes.
class CountingTextMeasurer final : public TextMeasurer {
 public:
  [[nodiscard]] Size measure(std::string_view text, const Font& font) const override {
    ++texts_;
    bytes_ += text.size();
    return measurer_.measure(text, font);
  }

  [[nodiscard]] double baseline(const Font& font) const override {
    return measurer_.baseline(font);
  }

  [[nodiscard]] std::size_t texts() const { return texts_; }
  [[nodiscard]] std::size_t bytes() const { return bytes_; }

 private:
  MetricTextMeasurer measurer_;
  mutable std::size_t texts_ = 0;
  mutable std::size_t bytes_ = 0;
};

bool isFinite(const LaidOutView& view) {
  const Rect& frame = view.frame;
  for (const double number : {frame.left(), frame.top(), frame.size.width, frame.size.height}) {
    if (!std::isfinite(number)) return false;
  }
  return frame.size.width >= 0 && frame.size.height >= 0 &&
         std::ranges::all_of(view.children, isFinite);
}

std::size_t nodesOf(const LaidOutView& view) {
  std::size_t count = 1;
  for (const LaidOutView& child : view.children) count += nodesOf(child);
  return count;
}

const ColourPalette palette;

bool shows(const LaidOutView& view, std::string_view content) {
  return view.shownText == content ||
         std::ranges::any_of(view.children,
                             [&](const LaidOutView& child) { return shows(child, content); });
}

/// Lays `view` out in several sizes, after it went through an archive, and looks at what comes out.
LaidOutView bounded(const View& view) {
  const auto decoded = viewOfArchive(archiveJson(view));
  EXPECT_TRUE(decoded);
  LaidOutView last;
  for (const Size size : {Size{0, 0}, Size{364, 382}, Size{100'000, 1}}) {
    const CountingTextMeasurer measurer;
    const LaidOutView laid = layOut(*decoded, size, {measurer, "10:30"});
    EXPECT_TRUE(isFinite(laid));
    EXPECT_LE(nodesOf(laid), 2 * mostArchivedNodes);
    EXPECT_LE(measurer.texts(), mostLayoutSteps / 4 + 1);
    EXPECT_LE(measurer.bytes(), 8 * mostLayoutSteps + longestArchivedText);
    EXPECT_EQ(laid, layOut(*decoded, size, {measurer, "10:30"}));
    const DrawList list = makeDrawList(laid, {palette, ColourScheme::light, nullptr});
    EXPECT_FALSE(textDump(laid).empty());
    EXPECT_LE(textDump(list).size(), std::size_t{64} * 1024 * 1024);
    if (size.height == 382) last = laid;
  }
  return last;
}

FrameNode bounds(double minimum, double maximum) {
  FrameNode frame;
  frame.width = {std::nullopt, minimum, std::nullopt, maximum};
  frame.height = frame.width;
  return frame;
}

using Children = std::vector<View>;

/// Each level offers the next one a dozen heights while it looks for the one that fits.
View gridsInGrids(int depth) {
  View view = word("innermost");
  for (int level = 0; level < depth; ++level) {
    const View rows = wholeRows(HorizontalAlignment::leading, {2.0, 0.0}, Children(9, word("row")));
    view = wholeGrid({1, 1, 1.5, topLeading}, {rows, std::move(view).padding(0.1), rows});
  }
  return view;
}

// Each level asks the next one for what it takes at two new lengths and at one that it computes.
View alternatingStacks(int depth) {
  View view = text("some words that wrap", {{10}, Truncation::middle, 0.5, 3});
  for (int level = 0; level < depth; ++level) {
    Children members = {std::move(view).frame(bounds(level + 0.5, 300 - level)),
                        circle(1).frame(bounds(1, 50 + level)), word("flexible")};
    view = level % 2 == 0 ? hstack(VerticalAlignment::centre, 1.5, std::move(members))
                          : vstack(HorizontalAlignment::leading, 1.5, std::move(members));
  }
  return view;
}

TEST(HostileLayout, OfStacksInFramesInStacks) {
  for (const int depth : {3, 10, 20, 31}) bounded(alternatingStacks(depth));
}

TEST(HostileLayout, OfChoicesOfChoices) {
  View view = word("innermost");
  for (int level = 0; level < 30; ++level) {
    const FitAxes axes = level % 2 == 0 ? FitAxes::horizontal : FitAxes::vertical;
    view = firstThatFits(axes, {circle(1).frame(1000 + level, 10), std::move(view).padding(0.25),
                                word("wide enough for no one")});
    if (level % 3 == 0) {
      view =
          hstack(VerticalAlignment::top, 1, {std::move(view).frame(bounds(level, 90)), circle(1)});
    }
  }
  bounded(view);
}

TEST(HostileLayout, OfRowsAndGridsInChoices) {
  View view = word("innermost");
  for (int level = 0; level < 15; ++level) {
    Children rows = {word("a row"), view,
                     text("more words to wrap", {{9}, Truncation::tail, 1, 4})};
    if (level < 4) rows.push_back(view);
    View whole = wholeRows(HorizontalAlignment::leading, {9, 4, 1}, rows);
    View grid = wholeGrid({2, 3, 3, topLeading}, {std::move(whole), word("b"), word("c")});
    view =
        firstThatFits(FitAxes::vertical, {std::move(grid).frame(bounds(1, 90 + level)), word("d")});
  }
  bounded(view);
}

TEST(HostileLayout, OfTenThousandRows) {
  Children rows;
  for (std::size_t row = 0; row < mostArchivedNodes - 1; ++row) {
    rows.push_back(word("row " + std::to_string(row)));
  }
  const LaidOutView whole = bounded(wholeRows(HorizontalAlignment::leading, {9, 4, 1}, rows));
  EXPECT_EQ(whole.children.front().children.size(), 29U);
  const LaidOutView grid = bounded(wholeGrid({2, 1, 1, topLeading}, rows));
  EXPECT_EQ(grid.children.size(), 29U);
  const LaidOutView column = bounded(vstack(HorizontalAlignment::leading, 0, rows));
  EXPECT_EQ(column.children.size(), rows.size());
  EXPECT_EQ(column.children.back().shownText, "row 9998");
  const LaidOutView line = bounded(hstack(VerticalAlignment::top, 1, rows));
  EXPECT_EQ(line.children.size(), rows.size());
}

TEST(HostileLayout, OfRowsThatAreAlmostNothing) {
  const Children specks(4800, circle(1).frame(1, 0.01));
  EXPECT_EQ(bounded(wholeGrid({1, 0, 0, topLeading}, specks)).children.size(), specks.size());
  EXPECT_EQ(bounded(wholeGrid({16, 0, -0.005, topLeading}, specks)).children.size(), 300U);
}

TEST(HostileLayout, OfThousandsOfLongTexts) {
  Children texts;
  for (int row = 0; row < 3000; ++row) {
    texts.push_back(text(std::to_string(row) + std::string(500, 'm'),
                         {{10}, Truncation::middle, 0.3, row % 3 == 0 ? 5U : 1U}));
  }
  bounded(hstack(VerticalAlignment::top, 1, texts));
  bounded(zstack(centred, std::move(texts)));
}

TEST(HostileLayout, OfALongTextOnAThousandLines) {
  const std::string longest(longestArchivedText, 'x');
  const View view{TextNode{longest, {10}, Truncation::tail, 1, 1000}, {}, {}};
  const CountingTextMeasurer measurer;
  const LaidOutView laid = layOut(view, {50, 382}, {measurer, ""});
  EXPECT_EQ(laid.shownLines.size(), 31U);
  EXPECT_LE(laid.frame.size.width, 50);
}

TEST(HostileLayout, OfTheLargestAndSmallestNumbers) {
  const FrameNode huge = bounds(100'000, unlimited);
  View view = word("a").padding({100'000, -100'000, -100'000, 100'000}).offset(-100'000, 100'000);
  view = hstack(VerticalAlignment::firstTextBaseline, -100'000,
                {view, circle(100'000).frame(huge), view, text("b", {{100'000}})});
  view = vstack(HorizontalAlignment::trailing, 100'000,
                {view, View(view).layoutPriority(-100'000),
                 View(view).alignmentGuide(HorizontalAlignment::trailing, 100'000)});
  for (const double spacing : {-100'000.0, 100'000.0}) {
    bounded(wholeGrid({16, spacing, spacing, centred}, {view, view, word("c")}));
    bounded(wholeRows(HorizontalAlignment::centre, {spacing, -spacing}, {view, view, word("c")}));
  }
}

TEST(HostileLayout, OfTheDeepestTreeOfEveryKind) {
  for (const View& sample : viewsOfEveryKind()) {
    if (sample.children.empty()) continue;
    View view = word("innermost");
    for (std::size_t depth = 1; depth < deepestArchivedNode; ++depth) {
      View outer = sample;
      outer.children.front() = std::move(view);
      view = std::move(outer);
    }
    bounded(view);
  }
}

TEST(HostileLayout, OfAnyTree) {
  for (unsigned seed = 0; seed < 100; ++seed) {
    SCOPED_TRACE(seed);
    bounded(ViewMaker(seed).make(8));
  }
}

TEST(HostileLayout, OfGridsInGrids) {
  for (const int depth : {2, 5, 20}) bounded(gridsInGrids(depth));
}

// The steps end in the grids; what stands beside them does not suffer.
TEST(HostileLayout, BeyondItsStepsShowsNoMore) {
  const auto column = [](int depth) {
    return laidOut(
        vstack(HorizontalAlignment::leading, 0, {word("first"), gridsInGrids(depth), word("last")}),
        {364, 382});
  };
  const LaidOutView shallow = column(2);
  EXPECT_TRUE(shows(shallow, "innermost"));
  const LaidOutView deep = column(20);
  EXPECT_TRUE(shows(deep, "first"));
  EXPECT_TRUE(shows(deep, "last"));
  EXPECT_FALSE(shows(deep, "innermost"));
  EXPECT_TRUE(isFinite(deep));
  EXPECT_LE(deep.frame.size.height, 382);
  EXPECT_EQ(deep, column(20));
}

TEST(HostileLayout, DescribesNoMoreThanAReaderWouldHear) {
  const Children names(5000, word("a name"));
  const LaidOutView laid = laidOut(vstack(HorizontalAlignment::leading, 0, names), {364, 382});
  EXPECT_EQ(laid.accessibleDescription.size(), longestAccessibleDescription);
  const View emoji = text("\U0001F680\U0001F680", {{10}});
  const LaidOutView rockets =
      laidOut(zstack(centred, Children(1000, emoji)).padding(1), {364, 382});
  EXPECT_LE(rockets.accessibleDescription.size(), longestAccessibleDescription);
  EXPECT_TRUE(rockets.accessibleDescription.ends_with("\U0001F680"));
}

}  // namespace
}  // namespace lanternfold
