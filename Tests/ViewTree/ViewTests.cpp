#include <gtest/gtest.h>

#include "ViewTree/Elements.h"
#include "ViewTree/View.h"

namespace lanternfold {
namespace {

TEST(View, SaysItsTexts) {
  const View row =
      hstack(VerticalAlignment::centre, 0, {symbol("globe"), text("IP", {}), text("10.0.0.1", {})});
  EXPECT_EQ(accessibleDescription(row, ""), "IP, 10.0.0.1");
}

TEST(View, SaysItsAccessibleNameInPlaceOfItsTexts) {
  EXPECT_EQ(accessibleDescription(text("\u2193", {}).accessible("Received"), ""), "Received");
}

TEST(View, SaysTheNameOfRowsBetweenAccessoriesBeforeThem) {
  const View row = accessoryRow({}, symbol("globe"), text("10.0.0.1", {}),
                                text("5", {}).accessible("Received 5 MB"))
                       .accessible("Internet");
  EXPECT_EQ(accessibleDescription(row, ""), "Internet, 10.0.0.1, Received 5 MB");
}

TEST(View, SaysTheRichestOfItsChoices) {
  const View choice = firstThatFits(FitAxes::both, {text("long", {}), text("short", {})});
  EXPECT_EQ(accessibleDescription(choice, ""), "long");
}

TEST(View, SaysTheTimeOfDrawing) {
  EXPECT_EQ(accessibleDescription(drawingTime("Last update %@", {}), "Today, 10:30"),
            "Last update Today, 10:30");
}

TEST(View, SaysNothingOfDecorations) {
  EXPECT_EQ(accessibleDescription(circle(2), ""), "");
  EXPECT_EQ(accessibleDescription(image("LanternfoldLogo"), ""), "");
}

TEST(View, IsAValue) {
  const View one = text("a", {}).padding(3);
  EXPECT_EQ(one, text("a", {}).padding(3));
  EXPECT_FALSE(one == text("a", {}).padding(4));
  EXPECT_FALSE(one == text("b", {}).padding(3));
}

TEST(View, ShowsTextsFromOutsideOnlyAfterMakingThemFit) {
  EXPECT_EQ(std::get<TextNode>(text("a\xff\n", {}).node).text, "a\uFFFD ");
}

TEST(View, SaysNamesFromOutsideOnlyAfterMakingThemFit) {
  EXPECT_EQ(circle(2).accessible("a\xff\n\u202E").accessibleName, "a\uFFFD ");
}

TEST(View, SaysTheContentOfALink) {
  EXPECT_EQ(accessibleDescription(link("app:x", text("Open", {})), ""), "Open");
}

TEST(View, SaysWhatStandsInAClipOrAScheme) {
  EXPECT_EQ(accessibleDescription(text("a", {}).clipped(3).colourScheme(ColourScheme::dark), ""),
            "a");
}

TEST(View, SaysAllRows) {
  const View rows = wholeRows(HorizontalAlignment::leading, {1}, {text("a", {}), text("b", {})});
  EXPECT_EQ(accessibleDescription(rows, ""), "a, b");
}

TEST(View, IsNoLinkWithoutAUrl) {
  EXPECT_EQ(link("no url", circle(2)), circle(2));
  EXPECT_EQ(std::get<LinkNode>(link("app:x", circle(2)).node).url, "app:x");
}

TEST(ViewDeathTest, RowsNeedASpacing) {
  EXPECT_DEATH((void)wholeRows(HorizontalAlignment::leading, {}, {}),
               "rows of views were made without a spacing");
}

TEST(ViewDeathTest, AGridNeedsAColumn) {
  EXPECT_DEATH((void)wholeGrid({0, 0, 0, centred}, {}),
               "a grid of views was made without a column");
}

TEST(ViewDeathTest, AChoiceNeedsAView) {
  EXPECT_DEATH((void)firstThatFits(FitAxes::both, {}), "a choice of views was made without a view");
}

}  // namespace
}  // namespace lanternfold
