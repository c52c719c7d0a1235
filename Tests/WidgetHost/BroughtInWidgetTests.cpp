// Widgets whose monitor is gone or has become smaller: where a user sees them meanwhile.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/WidgetHost/DeskWorld.h"

namespace lanternfold {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using Places = std::vector<std::optional<MonitorPosition>>;
using enum WidgetFamily;

MonitorArea monitor(std::string name, Size size, bool isPrimary = false) {
  return {.name = std::move(name), .size = size, .workArea = {{}, size}, .isPrimary = isPrimary};
}

const std::vector<MonitorArea> laptop{monitor("eDP-1", {1280, 800}, true)};
const std::vector<MonitorArea> docked{monitor("eDP-1", {1280, 800}),
                                      monitor("DP-1", {1920, 1080}, true)};

RememberedWidget widget(WidgetFamily family, std::string monitor, int x, int y) {
  return {.position = {std::move(monitor), x, y}, .size = widgetSize(family)};
}

MonitorPosition at(int x, int y, std::string monitor = "eDP-1") {
  return {std::move(monitor), x, y};
}

TEST(ShownPositions, AreTheRememberedOnesWhileTheMonitorsAreThere) {
  const std::vector widgets{widget(small, "DP-1", 1750, 910), widget(small, "eDP-1", 50, 50),
                            widget(large, "eDP-1", 50, 50), widget(small, "eDP-1", 60, 60)};
  Places remembered;
  for (const auto& each : widgets) remembered.emplace_back(each.position);
  EXPECT_EQ(shownPositions(widgets, docked), remembered)
      << "above each other, as the user wants it";
  EXPECT_THAT(shownPositions(widgets, {}), Each(std::nullopt));
  EXPECT_THAT(shownPositions({}, docked), IsEmpty());
}

TEST(ShownPositions, OfThoseThatAreMovedToTheSameCornerAreAStepAside) {
  const std::vector widgets{widget(small, "DP-1", 1700, 700), widget(small, "DP-1", 1750, 800),
                            widget(small, "DP-1", 1750, 910), widget(medium, "DP-1", 1500, 850)};
  EXPECT_EQ(shownPositions(widgets, laptop),
            (Places{at(1110, 630), at(1086, 606), at(1062, 582), at(844, 558)}))
      << "the first one no further than is needed, the others within the gap";
}

TEST(ShownPositions, OfOneThatComesOverAnotherIsAStepAsideAndTheOtherOneStays) {
  const std::vector widgets{widget(small, "DP-1", 100, 100), widget(small, "eDP-1", 100, 100)};
  EXPECT_EQ(shownPositions(widgets, laptop), (Places{at(124, 124), at(100, 100)}));
}

TEST(ShownPositions, OfThoseThatAreBroughtInBesideOthersAreAsFarFromTheCornerAsEver) {
  const std::vector widgets{widget(medium, "eDP-1", 892, 24), widget(medium, "DP-1", 700, 24),
                            widget(medium, "DP-1", 400, 900)};
  EXPECT_EQ(shownPositions(widgets, laptop), (Places{at(892, 24), at(700, 24), at(400, 630)}))
      << "those that cover each other in part can be told apart";
}

TEST(ShownPositions, AsMonitorsShrinkEachOfTheFirstSetCanBeSeen) {
  const std::vector widgets{widget(large, "eDP-1", 892, 24), widget(medium, "eDP-1", 892, 430),
                            widget(medium, "eDP-1", 892, 624), widget(small, "eDP-1", 698, 24),
                            widget(medium, "eDP-1", 504, 218)};
  const std::vector shrunk{monitor("eDP-1", {640, 450}, true)};
  EXPECT_EQ(shownPositions(widgets, shrunk),
            (Places{at(276, 24), at(276, 280), at(252, 256), at(206, 24), at(252, 218)}));
}

using BroughtInWidgetTest = DeskWorld;

TEST_F(BroughtInWidgetTest, StandsAsideWhileItsMonitorIsGoneAndGoesBack) {
  files_.putFile(file_,
                 R"({"version":1,"widgets":[)"
                 R"({"id":"1","kind":"C","family":"small","monitor":"DP-1","x":100,"y":100},)"
                 R"({"id":"2","kind":"C","family":"small","monitor":"eDP-1","x":100,"y":100}]})");
  const auto shown = [this] {
    return Places{desk_->card("1")->shownAt, desk_->card("2")->shownAt};
  };
  const Places home{at(100, 100, "DP-1"), at(100, 100)};
  desk_->start();
  EXPECT_EQ(shown(), (Places{std::nullopt, std::nullopt}));
  desk_->monitorsChanged(docked);
  EXPECT_EQ(shown(), home);
  desk_->monitorsChanged(laptop);
  EXPECT_EQ(shown(), (Places{at(124, 124), at(100, 100)}));
  EXPECT_EQ(desk_->card("1")->placed.position, at(100, 100, "DP-1"));
  desk_->monitorsChanged(docked);
  EXPECT_EQ(shown(), home);
}

TEST_F(BroughtInWidgetTest, StaysWhereItIsWhenTheUserTakesTheOtherOneAway) {
  startAndSettle();
  ASSERT_TRUE(desk_->move("2", {"HDMI-1", 1532, 430}));
  ASSERT_TRUE(desk_->move("3", {"HDMI-1", 1532, 430}));
  EXPECT_EQ(desk_->card("2")->shownAt, at(1532, 430, "DP-1"));
  const auto aside = desk_->card("3")->shownAt;
  EXPECT_NE(aside, at(1532, 430, "DP-1"));
  EXPECT_THAT(told(), ElementsAre("changed 2", "changed 3"));
  ASSERT_TRUE(desk_->move("2", {"DP-1", 8, 8}));
  EXPECT_EQ(desk_->card("2")->shownAt, at(8, 8, "DP-1"));
  EXPECT_EQ(desk_->card("3")->shownAt, aside);
  EXPECT_THAT(told(), ElementsAre("changed 2"));
}

TEST_F(BroughtInWidgetTest, StaysWhereItIsWhenMonitorsAreToldOfThatAreAsTheyWere) {
  startAndSettle();
  ASSERT_TRUE(desk_->move("2", {"HDMI-1", 1532, 430}));
  ASSERT_TRUE(desk_->move("3", {"HDMI-1", 1532, 430}));
  const auto aside = desk_->card("3")->shownAt;
  ASSERT_TRUE(desk_->move("2", {"DP-1", 8, 8}));
  desk_->monitorsChanged(oneMonitor());
  EXPECT_EQ(desk_->card("3")->shownAt, aside);
}

TEST_F(BroughtInWidgetTest, ThoseThatWereAddedWithoutAMonitorStandAside) {
  startAndSettle();
  for (const char* id : {"1", "2", "3"}) ASSERT_TRUE(desk_->remove(id));
  desk_->monitorsChanged({});
  ASSERT_TRUE(desk_->add("C", {}, {}, {}));
  ASSERT_TRUE(desk_->add("C", {}, {}, {}));
  EXPECT_EQ(desk_->card("5")->shownAt, std::nullopt);
  desk_->monitorsChanged(laptop);
  EXPECT_EQ(desk_->card("4")->shownAt, at(0, 0));
  EXPECT_EQ(desk_->card("5")->shownAt, at(24, 24));
}

TEST_F(BroughtInWidgetTest, InAnotherSizeIsStillInsideOfTheWorkArea) {
  desk_->monitorsChanged(laptop);
  desk_->start();
  settle();
  ASSERT_TRUE(desk_->resize("1", small));
  ASSERT_TRUE(desk_->move("1", at(1100, 620)));
  ASSERT_TRUE(desk_->resize("1", large));
  EXPECT_EQ(desk_->card("1")->placed.position, at(1100, 620));
  EXPECT_EQ(desk_->card("1")->shownAt, at(916, 418));
}

}  // namespace
}  // namespace lanternfold
