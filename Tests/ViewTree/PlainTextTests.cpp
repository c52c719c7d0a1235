// What views say where nobody can draw them.
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ViewTree/Elements.h"
#include "ViewTree/PlainText.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Row = PlainTextRow;

View word(std::string_view content) { return text(content, {}); }

View row(std::string_view label, std::string_view value) {
  return hstack(VerticalAlignment::centre, 4, {word(label).layoutPriority(1), word(value)});
}

View column(std::vector<View> views) {
  return vstack(HorizontalAlignment::leading, 0, std::move(views));
}

std::vector<Row> rowsOf(const View& view) { return plainTextRows(view, "10:30"); }

TEST(PlainText, OfTextsBesideEachOtherIsARow) {
  EXPECT_THAT(rowsOf(row("IP", "192.0.2.1")), ElementsAre(Row{"IP", "192.0.2.1"}));
  EXPECT_THAT(rowsOf(hstack(VerticalAlignment::top, 0, {symbol("globe"), row("a", "b")})),
              ElementsAre(Row{"a", "b"}));
}

TEST(PlainText, OfAllElseFollowsEachOther) {
  const std::vector<View> both = {row("a", "1"), word("b")};
  const auto expected = ElementsAre(Row{"a", "1"}, Row{"b"});
  EXPECT_THAT(rowsOf(column(both)), expected);
  EXPECT_THAT(rowsOf(zstack(centred, both)), expected);
  EXPECT_THAT(rowsOf(wholeRows(HorizontalAlignment::leading, {1}, both)), expected);
  EXPECT_THAT(rowsOf(hstack(VerticalAlignment::top, 0, {column(both), word("c")})),
              ElementsAre(Row{"a", "1"}, Row{"b"}, Row{"c"}));
}

TEST(PlainText, OfAChoiceIsThatOfTheRichest) {
  EXPECT_THAT(rowsOf(firstThatFits(FitAxes::both, {row("a", "1"), word("1")})),
              ElementsAre(Row{"a", "1"}));
}

TEST(PlainText, LeavesOutTheTitleOfAChoice) {
  EXPECT_THAT(rowsOf(firstThatFits(FitAxes::both, {row("en0", "Port")}).accessible("Port")),
              ElementsAre(Row{"en0", "Port"}));
}

TEST(PlainText, OfPicturesShapesAndButtonsIsNothing) {
  EXPECT_THAT(rowsOf(zstack(centred, {symbol("globe"), image("Logo"), circle(1), emptyView(),
                                      button("RefreshAppIntent", word("Refresh")),
                                      button("Other", symbol("x")).accessible("Refresh")})),
              IsEmpty());
  EXPECT_THAT(rowsOf(word("")), IsEmpty());
}

TEST(PlainText, OfWhatStandsBehindComesAfterTheContent) {
  EXPECT_THAT(rowsOf(word("a").padding(1).background(roundedRectangle(1, Colour::white()))),
              ElementsAre(Row{"a"}));
  EXPECT_THAT(rowsOf(word("a").background(drawingTime("Last update %@", {}))),
              ElementsAre(Row{"a"}, Row{"Last update 10:30"}));
}

TEST(PlainText, OfANamedPictureIsItsName) {
  EXPECT_THAT(rowsOf(symbol("Gauge").accessible("Bandwidth")), ElementsAre(Row{"Bandwidth"}));
}

View meter(std::string_view name) {
  return zstack(centred, {circle(2), column({word("\u2193"), word("941.9"), word("MB")})})
      .frame(42, 42)
      .accessible(name);
}

TEST(PlainText, OfAMeterIsItsNameAndItsFigure) {
  EXPECT_THAT(rowsOf(meter("Received 941.9 MB")), ElementsAre(Row{"Received", "941.9 MB"}));
  EXPECT_THAT(rowsOf(meter("Received")), ElementsAre(Row{"Received"}));
  EXPECT_THAT(rowsOf(meter("941.9 MB")), ElementsAre(Row{"941.9 MB"}));
  EXPECT_THAT(rowsOf(meter("Received 1941.9 MB")), ElementsAre(Row{"Received 1941.9", "MB"}));
}

TEST(PlainText, OfMetersBesideEachOtherIsARowEach) {
  EXPECT_THAT(rowsOf(hstack(VerticalAlignment::centre, 5,
                            {meter("Received 941.9 MB"), meter("Sent 941.9 MB")})),
              ElementsAre(Row{"Received", "941.9 MB"}, Row{"Sent", "941.9 MB"}));
}

// A tile that is a picture alone must say where it leads.
TEST(PlainText, OfALinkSaysWhereItLeads) {
  EXPECT_THAT(rowsOf(link("app:x", symbol("Gauge").padding(5))), ElementsAre(Row{"app:x"}));
  EXPECT_THAT(rowsOf(link("app:x", word("Open"))), ElementsAre(Row{"Open"}, Row{"app:x"}));
}

TEST(PlainText, OfDeepNestingStaysQuick) {
  View view = word("a");
  for (int depth = 0; depth < 500; ++depth) {
    view = hstack(VerticalAlignment::centre, 0, {std::move(view), symbol("globe")});
  }
  EXPECT_THAT(rowsOf(view), ElementsAre(Row{"a"}));
}

}  // namespace
}  // namespace lanternfold
