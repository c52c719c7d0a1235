#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/DrawList.h"
#include "ViewTree/Elements.h"
#include "ViewTree/TextDump.h"

namespace lanternfold {
namespace {

const ColourPalette palette = {{"Ink", {Rgba{0, 0, 0, 1}, Rgba{1, 1, 1, 0.5}}}};

std::string dumpOf(const View& view, ColourScheme scheme = ColourScheme::light,
                   std::vector<std::string>* reports = nullptr) {
  const MetricTextMeasurer measurer;
  const LaidOutView laidOut = layOut(view, {20, 12}, {measurer, ""});
  const auto report = [&](std::string_view line) {
    if (reports) reports->emplace_back(line);
  };
  return textDump(makeDrawList(laidOut, {palette, scheme, report}));
}

TEST(DrawList, ResolvesColoursByScheme) {
  const View view = text("ab", {{10}}).foreground(Colour::named("Ink"));
  EXPECT_EQ(dumpOf(view, ColourScheme::light), "text 5,0 10x12 #000000FF 10 \"ab\"\n");
  EXPECT_EQ(dumpOf(view, ColourScheme::dark), "text 5,0 10x12 #FFFFFF80 10 \"ab\"\n");
}

TEST(DrawList, MultipliesOpacities) {
  const View view = image("Logo").opacity(0.5, 0.25).opacity(0.4, 0.4);
  EXPECT_EQ(dumpOf(view, ColourScheme::light), "image 0,0 20x12 Logo opacity 0.2\n");
  EXPECT_EQ(dumpOf(view, ColourScheme::dark), "image 0,0 20x12 Logo opacity 0.1\n");
}

TEST(DrawList, LeavesOutWhatIsInvisible) {
  EXPECT_EQ(dumpOf(image("Logo").opacity(0, 0)), "");
  EXPECT_EQ(dumpOf(image("Logo").frame(0, 10)), "");
}

TEST(DrawList, DrawsTheBackgroundFirst) {
  EXPECT_EQ(dumpOf(circle(2).background(roundedRectangle(3, Colour::white()))),
            "rounded-rectangle 0,0 20x12 #FFFFFFFF radius 3\n"
            "circle 0,0 20x12 #FFFFFFFF line 2\n");
}

TEST(DrawList, OfALinkIsThatOfItsContent) {
  EXPECT_EQ(dumpOf(link("app:x", circle(2)).foreground(Colour::named("Ink"))),
            "circle 0,0 20x12 #000000FF line 2\n");
}

TEST(DrawList, ClipsWhatStandsInsideAClip) {
  EXPECT_EQ(dumpOf(zstack(centred, {circle(1), circle(2).clipped(4), circle(3)})),
            "circle 0,0 20x12 #FFFFFFFF line 1\n"
            "clip 0,0 20x12 radius 4\n"
            "  circle 0,0 20x12 #FFFFFFFF line 2\n"
            "end-clip\n"
            "circle 0,0 20x12 #FFFFFFFF line 3\n");
}

TEST(DrawList, NestsClips) {
  EXPECT_EQ(dumpOf(circle(1).clipped(2).padding(1).clipped(4)),
            "clip 0,0 20x12 radius 4\n"
            "  clip 1,1 18x10 radius 2\n"
            "    circle 1,1 18x10 #FFFFFFFF line 1\n"
            "  end-clip\n"
            "end-clip\n");
}

TEST(DrawList, LeavesOutAClipAroundNothing) {
  EXPECT_EQ(dumpOf(image("Logo").opacity(0, 0).clipped(4)), "");
  EXPECT_EQ(dumpOf(image("Logo").frame(5, 5).frame(0, 10).clipped(4)), "");
}

TEST(DrawList, PaintsWhatHasASchemeOfItsOwnInThat) {
  const View circles = zstack(centred, {circle(1), circle(2).colourScheme(ColourScheme::light)})
                           .opacity(1, 0.5)
                           .colourScheme(ColourScheme::dark)
                           .foreground(Colour::named("Ink"));
  EXPECT_EQ(dumpOf(circles),
            "circle 0,0 20x12 #FFFFFF40 line 1\n"
            "circle 0,0 20x12 #00000080 line 2\n");
}

TEST(DrawList, PaintsInvalidatedContentFainter) {
  const MetricTextMeasurer measurer;
  const LaidOutView laidOut =
      layOut(image("Logo").invalidatableContent(), {20, 12}, {measurer, ""});
  DrawContext context{palette, ColourScheme::light, nullptr};
  EXPECT_EQ(textDump(makeDrawList(laidOut, context)), "image 0,0 20x12 Logo opacity 1\n");
  context.isContentInvalidated = true;
  EXPECT_EQ(textDump(makeDrawList(laidOut, context)), "image 0,0 20x12 Logo opacity 0.5\n");
}

TEST(DrawList, DrawsEveryLineOfAText) {
  EXPECT_EQ(
      dumpOf(
          text("a bcd", {{5}, Truncation::tail, 1, 2, HorizontalAlignment::trailing}).frame(8, 12)),
      "text 11.3,0 2.5x6 #FFFFFFFF 5 \"a\"\n"
      "text 6.3,6 7.5x6 #FFFFFFFF 5 \"bcd\"\n");
}

TEST(DrawList, SaysHowStrongASymbolIs) {
  EXPECT_EQ(dumpOf(symbol("wifi", SymbolStyle{std::nullopt, 0.25})),
            "symbol 0,0 20x12 #FFFFFFFF wifi strength 0.3\n");
}

TEST(DrawList, ReportsAColourThatThePaletteLacksAndDrawsGrey) {
  std::vector<std::string> reports;
  EXPECT_EQ(dumpOf(circle(2).foreground(Colour::named("Rust")), ColourScheme::light, &reports),
            "circle 0,0 20x12 #808080FF line 2\n");
  EXPECT_EQ(reports, std::vector<std::string>{"no colour is named Rust"});
}

TEST(Colour, MultipliesItsOpacityIntoItsValue) {
  EXPECT_EQ(resolveColour({std::string("Ink"), 0.5}, palette, ColourScheme::dark),
            (Rgba{1, 1, 1, 0.25}));
  EXPECT_EQ(resolveColour(Colour::white(0.4), palette, ColourScheme::light), (Rgba{1, 1, 1, 0.4}));
}

TEST(Colour, ContrastRunsFromOneToTwentyOne) {
  EXPECT_NEAR(contrastRatio({0, 0, 0, 1}, {1, 1, 1, 1}), 21, 0.001);
  EXPECT_NEAR(contrastRatio({1, 0, 0, 1}, {1, 0, 0, 1}), 1, 0.001);
}

TEST(Colour, BlendsOverAnother) {
  const Rgba blend = blended({1, 1, 1, 0.5}, {0, 0, 0, 1});
  EXPECT_EQ(blend, (Rgba{0.5, 0.5, 0.5, 1}));
}

}  // namespace
}  // namespace lanternfold
