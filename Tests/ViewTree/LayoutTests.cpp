#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/Elements.h"
#include "ViewTree/Layout.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

/// A text of ten points: 5 wide a character, 12 high.
View word(std::string_view content) { return text(content, {{10}}); }

std::string dumpOf(const View& view, Size size) {
  const MetricTextMeasurer measurer;
  return textDump(layOut(view, size, {measurer, "10:30"}));
}

FrameNode fillingFrame(Alignment alignment) {
  FrameNode frame;
  frame.width.maximum = unlimited;
  frame.height.maximum = unlimited;
  frame.alignment = alignment;
  return frame;
}

TEST(Layout, StandsInTheMiddleOfThePicture) {
  EXPECT_EQ(dumpOf(word("abcd"), {100, 20}), "text 40,4 20x12 10 \"abcd\"\n");
}

TEST(Layout, OfARowAlignsAndSpacesItsChildren) {
  EXPECT_EQ(dumpOf(hstack(VerticalAlignment::top, 4, {symbol("globe").frame(18, 18), word("ab")}),
                   {32, 18}),
            "hstack 0,0 32x18 top spacing 4 -- \"ab\"\n"
            "  frame 0,0 18x18 width 18 height 18 centre-centre\n"
            "    symbol 0,0 18x18 globe\n"
            "  text 22,0 10x12 10 \"ab\"\n");
}

TEST(Layout, OfAColumnAlignsAndSpacesItsChildren) {
  EXPECT_EQ(dumpOf(vstack(HorizontalAlignment::trailing, 2, {word("abcd"), word("ab")}), {20, 26}),
            "vstack 0,0 20x26 trailing spacing 2 -- \"abcd, ab\"\n"
            "  text 0,0 20x12 10 \"abcd\"\n"
            "  text 10,14 10x12 10 \"ab\"\n");
}

TEST(Layout, ShortensTheLongestTextOfARowFirst) {
  EXPECT_EQ(
      dumpOf(hstack(VerticalAlignment::centre, 0, {word("abcdefghij"), word("xy")}), {40, 12}),
      "hstack 0,0 40x12 centre spacing 0 -- \"abcdefghij, xy\"\n"
      "  text 0,0 30x12 10 \"abcde\u2026\" -- \"abcdefghij\"\n"
      "  text 30,0 10x12 10 \"xy\"\n");
}

TEST(Layout, GivesAChildOfHigherPriorityItsRoomFirst) {
  EXPECT_EQ(dumpOf(hstack(VerticalAlignment::centre, 0,
                          {word("abcdefghij"), word("tuvwxyz").layoutPriority(1)}),
                   {45, 12}),
            "hstack 0,0 45x12 centre spacing 0 -- \"abcdefghij, tuvwxyz\"\n"
            "  text 0,0 10x12 10 \"a\u2026\" -- \"abcdefghij\"\n"
            "  layout-priority 10,0 35x12 1 -- \"tuvwxyz\"\n"
            "    text 10,0 35x12 10 \"tuvwxyz\"\n");
}

TEST(Layout, OfAnUnlimitedFrameFillsAndAligns) {
  EXPECT_EQ(dumpOf(word("ab").frame(fillingFrame(bottomLeading)), {50, 40}),
            "frame 0,0 50x40 max-width unlimited max-height unlimited bottom-leading -- \"ab\"\n"
            "  text 0,28 10x12 10 \"ab\"\n");
}

TEST(Layout, PaddingSurroundsItsContent) {
  EXPECT_EQ(dumpOf(word("ab").padding({1, 2, 3, 4}), {16, 16}),
            "padding 0,0 16x16 1 2 3 4 -- \"ab\"\n"
            "  text 2,1 10x12 10 \"ab\"\n");
}

TEST(Layout, PaddingNeverLeavesItsParent) {
  EXPECT_EQ(dumpOf(word("ab").padding(2), {3, 16}),
            "padding 0,0 3x16 2 2 2 2 -- \"ab\"\n"
            "  text 1.5,2 0x12 -- \"ab\"\n");
}

TEST(Layout, OffsetMovesWhatIsDrawnButNotItsRoom) {
  EXPECT_EQ(dumpOf(word("ab").offset(40, -40), {10, 12}),
            "offset 0,0 10x12 40,-40 -- \"ab\"\n"
            "  text 40,-40 10x12 10 \"ab\"\n");
}

TEST(Layout, BackgroundHasTheSizeOfItsContentAndIsDrawnFirst) {
  EXPECT_EQ(dumpOf(word("ab").background(roundedRectangle(3, Colour::white(0.4))), {50, 12}),
            "background 20,0 10x12 centre-centre -- \"ab\"\n"
            "  rounded-rectangle 20,0 10x12 radius 3 fill #FFFFFFFF at 0.4\n"
            "  text 20,0 10x12 10 \"ab\"\n");
}

TEST(Layout, OfLayersIsAsLargeAsTheLargest) {
  EXPECT_EQ(dumpOf(zstack(topTrailing, {word("abcd"), word("ab")}), {20, 12}),
            "zstack 0,0 20x12 top-trailing -- \"abcd, ab\"\n"
            "  text 0,0 20x12 10 \"abcd\"\n"
            "  text 10,0 10x12 10 \"ab\"\n");
}

TEST(Layout, ChoosesTheFirstThatFitsWhole) {
  const View choice = firstThatFits(FitAxes::both, {word("abcdef"), word("abc"), word("a")});
  EXPECT_NE(dumpOf(choice, {30, 12}).find("\"abcdef\"\n"), std::string::npos);
  EXPECT_NE(dumpOf(choice, {29, 12}).find("text 7,0 15x12 10 \"abc\"\n"), std::string::npos);
  EXPECT_NE(dumpOf(choice, {29, 11}).find("10 \"a\"\n"), std::string::npos);
  EXPECT_NE(dumpOf(choice, {2, 12}).find("text 1,0 0x12 -- \"a\"\n"), std::string::npos);
}

TEST(Layout, ChoosesByTheAxesAskedFor) {
  const View across = firstThatFits(FitAxes::horizontal, {word("abc"), word("a")});
  EXPECT_NE(dumpOf(across, {15, 1}).find("\"abc\"\n"), std::string::npos);
  const View down = firstThatFits(FitAxes::vertical, {word("abc"), word("a")});
  EXPECT_NE(dumpOf(down, {14, 12}).find("a\u2026"), std::string::npos);
}

TEST(Layout, OfALinkIsThatOfItsContent) {
  EXPECT_EQ(dumpOf(link("app://monitor?mini=1", word("ab").padding(1)), {50, 14}),
            "link 19,0 12x14 app://monitor?mini=1 -- \"ab\"\n"
            "  padding 19,0 12x14 1 1 1 1 -- \"ab\"\n"
            "    text 20,1 10x12 10 \"ab\"\n");
}

// A picture that takes the foreground colour: as wide as its frame, as high as there is room.
TEST(Layout, OfASymbolWithoutAPointSizeFillsWhatItsFrameLeavesFree) {
  FrameNode wide;
  wide.width.fixed = 80;
  EXPECT_EQ(dumpOf(symbol("Gauge").frame(wide).padding(5), {170, 60}),
            "padding 40,0 90x60 5 5 5 5\n"
            "  frame 45,5 80x50 width 80 centre-centre\n"
            "    symbol 45,5 80x50 Gauge\n");
}

TEST(Layout, ShrinksATextBeforeItShortensIt) {
  const View shrinking = text("abcdefgh", {{10}, Truncation::tail, 0.5});
  EXPECT_EQ(dumpOf(shrinking, {30, 12}), "text 0.2,0 29.7x12 down-to 0.5 7.4 \"abcdefgh\"\n");
  EXPECT_EQ(dumpOf(shrinking, {15, 12}),
            "text 0,0 15x12 down-to 0.5 5 \"abcde\u2026\" -- \"abcdefgh\"\n");
}

TEST(Layout, ShrinksATextAsFarAsTheOneItIsSizedWith) {
  const auto shrunk = [](std::string_view content, std::string_view other) {
    const MetricTextMeasurer measurer;
    const View view = text(content, {.font = {10}, .minimumScale = 0.5, .sizedWith = other});
    const LaidOutView laidOut = layOut(view, {30, 12}, {measurer, ""});
    return std::pair(laidOut.shownFont.size, laidOut.shownLines.front().text);
  };
  const auto [size, shown] = shrunk("abcdefgh", "abcd");
  EXPECT_LT(size, 10);
  EXPECT_EQ(shown, "abcdefgh");
  EXPECT_EQ(shrunk("abcd", "abcdefgh"), std::pair(size, std::string("abcd")));
  EXPECT_EQ(shrunk("abcd", "abc").first, 10);
  EXPECT_EQ(shrunk("abcd", std::string(100, 'a')), std::pair(5.0, std::string("abcd")));
}

View paragraph(std::string_view content, std::size_t lineLimit) {
  return text(content, {{10}, Truncation::tail, 1, lineLimit});
}

TEST(Layout, BreaksATextIntoLines) {
  EXPECT_EQ(dumpOf(paragraph("one two three", 3), {40, 40}),
            "text 2.5,8 35x24 lines 3 10 \"one two\" / \"three\"\n");
  EXPECT_EQ(dumpOf(paragraph("one two three", 2), {25, 40}),
            "text 0,8 25x24 lines 2 10 \"one\" / \"two \u2026\" -- \"one two three\"\n");
}

TEST(Layout, OfATextThatMayWrapIsIdeallyOneLine) {
  const View choice = firstThatFits(FitAxes::horizontal, {paragraph("one two", 3), word("x")});
  EXPECT_NE(dumpOf(choice, {35, 40}).find("\"one two\"\n"), std::string::npos);
  EXPECT_NE(dumpOf(choice, {34, 40}).find("\"x\"\n"), std::string::npos);
}

TEST(Layout, ShowsNoMoreLinesThanHaveRoom) {
  EXPECT_EQ(dumpOf(paragraph("one two three", 3), {25, 35}),
            "text 0,5.5 25x24 lines 3 10 \"one\" / \"two \u2026\" -- \"one two three\"\n");
  EXPECT_EQ(dumpOf(paragraph("one two three", 3), {25, 5}),
            "text 0,-3.5 25x12 lines 3 10 \"one \u2026\" -- \"one two three\"\n");
}

TEST(Layout, DoesNotShrinkATextThatMayWrap) {
  const View shrinking = text("abcd efgh", {{10}, Truncation::tail, 0.5, 2});
  EXPECT_EQ(dumpOf(shrinking, {20, 24}),
            "text 0,0 20x24 down-to 0.5 lines 2 10 \"abcd\" / \"efgh\"\n");
}

std::string mirroredDumpOf(const View& view, Size size) {
  const MetricTextMeasurer measurer;
  return textDump(layOut(view, size, {measurer, "10:30", LayoutDirection::rightToLeft}));
}

TEST(Layout, FromRightToLeftIsMirrored) {
  EXPECT_EQ(mirroredDumpOf(hstack(VerticalAlignment::top, 4, {symbol("globe", 12), word("ab")})
                               .padding({0, 10, 0, 0})
                               .frame(fillingFrame(topLeading)),
                           {60, 12}),
            "frame 0,0 60x12 max-width unlimited max-height unlimited top-leading -- \"ab\"\n"
            "  padding 24,0 36x12 0 10 0 0 -- \"ab\"\n"
            "    hstack 24,0 26x12 top spacing 4 -- \"ab\"\n"
            "      symbol 38,0 12x12 globe size 12\n"
            "      text 24,0 10x12 10 \"ab\"\n");
}

TEST(Layout, FromRightToLeftMovesTheOtherWay) {
  EXPECT_EQ(mirroredDumpOf(word("ab").offset(40, -40), {10, 12}),
            "offset 0,0 10x12 40,-40 -- \"ab\"\n"
            "  text -40,-40 10x12 10 \"ab\"\n");
}

TEST(Layout, FromRightToLeftPutsShorterLinesOfATextAtTheRight) {
  const MetricTextMeasurer measurer;
  const LaidOutView view =
      layOut(paragraph("one two three", 3), {40, 24}, {measurer, "", LayoutDirection::rightToLeft});
  EXPECT_EQ(view.frame, (Rect{{2.5, 0}, {35, 24}}));
  EXPECT_EQ(view.shownLines, (std::vector<ShownLine>{{"one two", {{2.5, 0}, {35, 12}}},
                                                     {"three", {{12.5, 12}, {25, 12}}}}));
}

TEST(Layout, FillsTheTimeOfDrawingIn) {
  EXPECT_EQ(dumpOf(drawingTime("at %@", {10}), {40, 12}),
            "drawing-time 0,0 40x12 of \"at %@\" 10 \"at 10:30\"\n");
}

TEST(Layout, OfEmptyStacksAndViewsTakesNoRoom) {
  EXPECT_EQ(dumpOf(hstack(VerticalAlignment::centre, 5, {}), {10, 10}),
            "hstack 5,5 0x0 centre spacing 5\n");
  EXPECT_EQ(dumpOf(emptyView(), {10, 10}), "empty 5,5 0x0\n");
}

TEST(Layout, LeavesTheViewAsItIs) {
  const View view = hstack(VerticalAlignment::centre, 0, {word("abcdefghij"), word("xy")});
  const View before = view;
  EXPECT_EQ(dumpOf(view, {40, 12}), dumpOf(view, {40, 12}));
  EXPECT_EQ(view, before);
}

TEST(Layout, OfDeepNestingStaysQuick) {
  View view = word("abc");
  for (int depth = 0; depth < 60; ++depth) {
    view = hstack(VerticalAlignment::centre, 0, {std::move(view), word("x")});
  }
  EXPECT_FALSE(dumpOf(view, {100, 20}).empty());
}

}  // namespace
}  // namespace lanternfold
