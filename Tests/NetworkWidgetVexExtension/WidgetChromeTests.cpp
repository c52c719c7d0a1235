// What every widget has around its rows: background, time of drawing, refresh button.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Views/BackgroundView.h"
#include "NetworkWidgetVexExtension/Views/InvalidatableContentViewModifierBackport.h"
#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "NetworkWidgetVexExtension/Views/RefreshButton.h"
#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "Tests/NetworkWidgetVexExtension/ViewDump.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(BackgroundView, LayersGradientLogoAndTimestamp) {
  const std::string dump = dumpOf(BackgroundView{true}.body(environment), {364, 170});
  EXPECT_THAT(dump, HasSubstr("zstack 0,0 364x170 top-trailing"));
  EXPECT_THAT(dump, HasSubstr("linear-gradient 0,0 364x170 BackgroundGradientStart to "
                              "BackgroundGradientEnd"));
  EXPECT_THAT(dump, HasSubstr("offset 204,0 160x160 40,-40"));
  EXPECT_THAT(dump, HasSubstr("opacity 244,-40 160x160 0.2 dark 0.1"));
  EXPECT_THAT(dump, HasSubstr("image 244,-40 160x160 LanternfoldLogo"));
  EXPECT_THAT(dump, HasSubstr("8 \"Last update Today, 10:30\""));
  EXPECT_LT(dump.find("linear-gradient"), dump.find("image"));
  EXPECT_LT(dump.find("image"), dump.find("drawing-time"));
}

TEST(BackgroundView, ShowsNoTimestampUnlessSwitchedOn) {
  EXPECT_THAT(dumpOf(BackgroundView{false}.body(environment)), Not(HasSubstr("Last update")));
}

TEST(BackgroundView, ShowsTheTimeOfDrawingNotTheEntrysDate) {
  NetworkAdapterEntry entry = timestampEntry();
  entry.date = std::chrono::system_clock::time_point(std::chrono::years(30));
  EXPECT_THAT(dumpOf(NetworkAdapterWidgetEntryView{entry}.body(environment)),
              HasSubstr("\"Last update Today, 10:30\""));
}

TEST(RefreshButton, IsWhiteAndPaddedAndFainterWhilePressed) {
  EXPECT_EQ(dumpOf(RefreshButton{}.face(RefreshButton::State::resting), {17, 17}),
            "foreground 0,0 17x17 #FFFFFFFF\n"
            "  background 0,0 17x17 centre-centre\n"
            "    rounded-rectangle 0,0 17x17 radius 5 fill #FFFFFFFF at 0.1\n"
            "    padding 0,0 17x17 3 3 3 3\n"
            "      symbol 3,3 11x11 arrow.triangle.2.circlepath size 11\n");
  EXPECT_THAT(dumpOf(RefreshButton{}.face(RefreshButton::State::pressed)),
              HasSubstr("#FFFFFFFF at 0.5"));
}

TEST(RefreshButton, ShowsItsOtherFaceWhilePressed) {
  const MetricTextMeasurer measurer;
  LayoutContext context{measurer, ""};
  const auto dump = [&] {
    return textDump(layOut(refreshButtonInCorner(environment), {364, 170}, context));
  };
  EXPECT_THAT(dump(), HasSubstr("foreground 8,145 17x17 #FFFFFFFF\n"));
  context.pressedIntent = "AnotherIntent";
  EXPECT_THAT(dump(), HasSubstr("foreground 8,145 17x17 #FFFFFFFF\n"));
  context.pressedIntent = "RefreshAppIntent";
  EXPECT_THAT(dump(), HasSubstr("foreground 8,145 17x17 #FFFFFFFF at 0.5\n"));
}

TEST(InvalidatableContentViewModifierBackport, MarksItsContentWhereToldAndWherePossible) {
  const View content = text("a", {{10}});
  WidgetEnvironment old{strings};
  old.supportsButtons = false;
  using Modifier = InvalidatableContentViewModifierBackport;
  EXPECT_EQ(Modifier{true}.body(content, environment), View(content).invalidatableContent());
  EXPECT_EQ(Modifier{false}.body(content, environment), content);
  EXPECT_EQ(Modifier{true}.body(content, old), content);
}

TEST(NetworkAdapterWidgetEntryView, MarksItsRowsAndNotItsButton) {
  const LaidOutView card = adapterCard("", placeholderEntry()).laidOut();
  const std::string dump = textDump(card);
  EXPECT_EQ(occurrences(dump, " invalidatable-content "), 1U);
  EXPECT_LT(dump.find("invalidatable-content"), dump.find("Ethernet Adapter\"\n"));
}

TEST(RefreshButton, Stands8PointsFromTheBottomLeadingCorner) {
  EXPECT_THAT(dumpOf(refreshButtonInCorner(environment), {364, 170}),
              HasSubstr("button 8,145 17x17 RefreshAppIntent -- \"Refresh\""));
}

TEST(RefreshButton, IsNotShownWhereAHostCannotPressIt) {
  WidgetEnvironment old{strings};
  old.supportsButtons = false;
  EXPECT_THAT(dumpOf(NetworkAdapterWidgetEntryView{placeholderEntry()}.body(old)),
              Not(HasSubstr("RefreshAppIntent")));
}

TEST(NetworkAdapterWidgetEntryView, SaysWhenTheChosenAdapterHasGone) {
  const std::string dump = dumpOf(NetworkAdapterWidgetEntryView{goneEntry()}.body(environment));
  EXPECT_THAT(dump, HasSubstr("\"en5\""));
  EXPECT_THAT(dump, HasSubstr("\"Not available\""));
  EXPECT_THAT(dump, Not(HasSubstr("192.168.0.9")));
}

TEST(NetworkAdapterWidgetEntryView, ShowsLocalisedTexts) {
  FakeStringTable german;
  german.set("No source", "Keine Quelle");
  EXPECT_THAT(dumpOf(NetworkAdapterWidgetEntryView{entryOf({})}.body({german})),
              HasSubstr("Keine Quelle"));
}

}  // namespace
}  // namespace lanternfold
