// What a user does with the widgets on a desktop, and what he sees.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/WidgetHost/DeskWorld.h"
#include "WidgetHost/Desk/HostCards.h"

namespace lanternfold {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using WidgetDeskTest = DeskWorld;

TEST_F(WidgetDeskTest, AtTheFirstStartEachWidgetStandsThereOnceInItsLargestSize) {
  startAndSettle();
  const auto cards = desk_->cards();
  ASSERT_EQ(cards.size(), 3U);
  EXPECT_EQ(cards[0].placed, (PlacedWidget{.id = "1",
                                           .kind = "A",
                                           .family = WidgetFamily::large,
                                           .configuration = {},
                                           .position = {"DP-1", 1532, 24}}));
  EXPECT_EQ(cards[1].placed.kind, "B");
  EXPECT_EQ(cards[1].placed.position, (MonitorPosition{"DP-1", 1532, 430}));
  EXPECT_EQ(cards[2].placed.family, WidgetFamily::small);
  EXPECT_EQ(stored(), placed());
  EXPECT_EQ(desk_->catalogue(), threeWidgets());
}

TEST_F(WidgetDeskTest, TheFirstSetWaitsForAMonitor) {
  desk_->start();
  EXPECT_THAT(asked(), ElementsAre("list"));
  EXPECT_THAT(desk_->cards(), IsEmpty());
  desk_->monitorsChanged({});
  EXPECT_THAT(desk_->cards(), IsEmpty());
  EXPECT_TRUE(desk_->awaitsDefaultSet());
  desk_->monitorsChanged(oneMonitor());
  EXPECT_EQ(desk_->cards().size(), 3U);
  EXPECT_FALSE(desk_->awaitsDefaultSet());
  desk_->monitorsChanged(oneMonitor());
  EXPECT_EQ(desk_->cards().size(), 3U) << "once";
}

TEST_F(WidgetDeskTest, AsksForTheCatalogueThenForASampleThenForTheTimeline) {
  desk_->monitorsChanged(oneMonitor());
  desk_->start();
  EXPECT_THAT(asked(), ElementsAre("list", "placeholder A large", "placeholder B medium",
                                   "placeholder C small", "timeline A large", "timeline B medium",
                                   "timeline C small"));
  EXPECT_THAT(told(), ElementsAre("catalogue", "added 1", "added 2", "added 3", "changed 1",
                                  "changed 2", "changed 3", "changed 1", "changed 2", "changed 3"));
}

TEST_F(WidgetDeskTest, ACardIsEmptyThenASampleThenTheTimeline) {
  startAndSettle();
  desk_->setObserver(nullptr);
  makeDesk();
  extension_.setSilent(true);
  desk_->start();
  dispatch_.runReady();
  ASSERT_EQ(desk_->cards().size(), 3U) << "remembered ones are there before any answer";
  EXPECT_EQ(desk_->card("1")->view, emptyCard(strings_));
  extension_.answerAll();
  dispatch_.runReady();
  EXPECT_FALSE(desk_->card("1")->isSample);
  extension_.answerAll();
  dispatch_.runReady();
  EXPECT_EQ(saidBy("1"), "placeholder A");
  EXPECT_TRUE(desk_->card("1")->isSample);
  extension_.answerAll();
  dispatch_.runReady();
  EXPECT_EQ(saidBy("1"), "A");
  EXPECT_FALSE(desk_->card("1")->isSample);
}

TEST_F(WidgetDeskTest, TheDesktopIsTheSameAtTheNextStart) {
  startAndSettle();
  ASSERT_TRUE(desk_->remove("2"));
  ASSERT_TRUE(desk_->move("3", {"DP-1", 40, 50}));
  const auto before = placed();
  makeDesk();
  desk_->monitorsChanged(oneMonitor());
  desk_->start();
  dispatch_.runReady();
  EXPECT_EQ(placed(), before);
}

TEST_F(WidgetDeskTest, ADesktopThatWasEmptiedStaysEmpty) {
  startAndSettle();
  for (const char* id : {"1", "2", "3"}) ASSERT_TRUE(desk_->remove(id));
  makeDesk();
  startAndSettle();
  EXPECT_THAT(desk_->cards(), IsEmpty());
  EXPECT_FALSE(desk_->awaitsDefaultSet());
}

TEST_F(WidgetDeskTest, WidgetsThatTheExtensionDoesNotHaveAreRememberedAndNoCards) {
  files_.putFile(
      file_, R"({"version":1,"widgets":[{"id":"x","kind":"Gone","family":"small"},)"
             R"({"id":"y","kind":"B","family":"small"},{"id":"z","kind":"C","family":"small"}]})");
  const std::string before = *files_.bytes(file_);
  desk_->start();
  EXPECT_EQ(desk_->cards().size(), 3U) << "nothing is known yet";
  EXPECT_THAT(told(), AllOf(testing::Contains("removed x"), testing::Contains("removed y")));
  ASSERT_EQ(desk_->cards().size(), 1U);
  EXPECT_EQ(desk_->cards()[0].placed.id, "z");
  EXPECT_EQ(desk_->card("x"), std::nullopt);
  EXPECT_THAT(
      log_.lines(),
      ElementsAre("widget \"x\" is not shown, since there is no \"Gone\" in small; it stays "
                  "in the file of the widgets",
                  HasSubstr("widget \"y\" is not shown, since there is no \"B\" in small")));
  EXPECT_FALSE(desk_->remove("x"));
  EXPECT_THAT(extension_.takeAsked(),
              ElementsAre("list", "placeholder C small", "timeline C small"));
  ASSERT_TRUE(desk_->move("z", {"DP-1", 1, 1}));
  EXPECT_EQ(stored().size(), 3U);
}

TEST_F(WidgetDeskTest, ADamagedStoreIsTheFirstSetAgain) {
  files_.putFile(file_, "torn");
  startAndSettle();
  EXPECT_EQ(desk_->cards().size(), 3U);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("it is kept as")));
}

TEST_F(WidgetDeskTest, AddsAWidgetWhereThereIsRoom) {
  startAndSettle();
  const auto id = desk_->add("B", std::nullopt, {.showTimestamp = true, .adapter = {}}, {});
  ASSERT_TRUE(id);
  EXPECT_EQ(*id, "4");
  const auto card = desk_->card("4");
  ASSERT_TRUE(card);
  EXPECT_EQ(card->placed.family, WidgetFamily::medium);
  EXPECT_EQ(card->placed.configuration.showTimestamp, true);
  EXPECT_EQ(card->placed.position, (MonitorPosition{"DP-1", 1532, 818}));
  EXPECT_THAT(told(), ElementsAre("added 4", "changed 4", "changed 4"));
  EXPECT_EQ(stored(), placed());
  EXPECT_EQ(extension_.lastRequest("B")->configuration.showTimestamp, true);

  const auto second = desk_->add("A", WidgetFamily::small, {}, MonitorPosition{"HDMI-1", 9, 8});
  ASSERT_TRUE(second);
  EXPECT_EQ(desk_->card(*second)->placed.position, (MonitorPosition{"HDMI-1", 9, 8}));
}

TEST_F(WidgetDeskTest, SaysWhyAWidgetCannotBeAdded) {
  EXPECT_THAT(desk_->add("A", {}, {}, {}).error(), HasSubstr("has not said yet"));
  startAndSettle();
  EXPECT_EQ(desk_->add("Z", {}, {}, {}).error(), "There is no widget \"Z\"; choose one of A, B, C");
  EXPECT_EQ(desk_->add("B", WidgetFamily::large, {}, {}).error(),
            "B comes in medium, not in large");
  EXPECT_THAT(
      desk_
          ->add("A", {},
                {.showTimestamp = {}, .adapter = AdapterParameter{"e", std::string(1025, 'x')}}, {})
          .error(),
      HasSubstr("1024 bytes"));
  EXPECT_EQ(desk_->cards().size(), 3U);
}

TEST_F(WidgetDeskTest, TwoHundredWidgetsAreTheMost) {
  startAndSettle();
  for (int count = 3; count < 200; ++count) ASSERT_TRUE(desk_->add("C", {}, {}, {}));
  EXPECT_THAT(desk_->add("C", {}, {}, {}).error(), HasSubstr("remove one first"));
  ASSERT_TRUE(desk_->remove("17"));
  EXPECT_TRUE(desk_->add("C", {}, {}, {}));
}

TEST_F(WidgetDeskTest, RemovesAWidgetAndWhatWasAskedForIt) {
  startAndSettle();
  extension_.setSilent(true);
  ASSERT_TRUE(desk_->reload("2"));
  EXPECT_EQ(extension_.waiting().size(), 1U);
  ASSERT_TRUE(desk_->remove("2"));
  EXPECT_THAT(extension_.waiting(), IsEmpty());
  EXPECT_THAT(told(), ElementsAre("removed 2"));
  EXPECT_EQ(desk_->card("2"), std::nullopt);
  EXPECT_EQ(stored(), placed());
}

TEST_F(WidgetDeskTest, OfAnUnknownIdNothingCanBeDone) {
  startAndSettle();
  const std::string reason =
      "No widget on the desktop has the id \"9\"; \"lanternfold-widgets ctl list\" shows those "
      "that "
      "there are";
  EXPECT_EQ(desk_->remove("9").error(), reason);
  EXPECT_EQ(desk_->resize("9", WidgetFamily::small).error(), reason);
  EXPECT_EQ(desk_->configure("9", {}).error(), reason);
  EXPECT_EQ(desk_->move("9", {}).error(), reason);
  EXPECT_EQ(desk_->reload("9").error(), reason);
  desk_->press("9", "RefreshAppIntent");
  EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(WidgetDeskTest, ResizedAWidgetIsEmptyUntilItsSampleComes) {
  startAndSettle();
  ASSERT_TRUE(desk_->resize("1", WidgetFamily::small));
  EXPECT_EQ(desk_->card("1")->view, emptyCard(strings_));
  EXPECT_EQ(desk_->card("1")->placed.family, WidgetFamily::small);
  EXPECT_EQ(stored(), placed());
  EXPECT_THAT(asked(), ElementsAre("placeholder A small", "timeline A small"));
  EXPECT_EQ(saidBy("1"), "A");
  EXPECT_EQ(desk_->resize("2", WidgetFamily::small).error(), "B comes in medium, not in small");
  ASSERT_TRUE(desk_->resize("1", WidgetFamily::small));
  EXPECT_THAT(asked(), IsEmpty()) << "it is small already";
}

TEST_F(WidgetDeskTest, ConfiguredAWidgetIsAskedForAtOnceAndKeepsItsViewMeanwhile) {
  startAndSettle();
  extension_.setSilent(true);
  ASSERT_TRUE(desk_->reload("1"));
  const ConfigurationParameters chosen{
      .showTimestamp = true, .adapter = AdapterParameter{.identifier = "en0", .display = "Port"}};
  ASSERT_TRUE(desk_->configure("1", chosen));
  EXPECT_EQ(saidBy("1"), "A");
  EXPECT_TRUE(desk_->card("1")->isAwaited);
  EXPECT_EQ(stored(), placed());
  EXPECT_THAT(asked(), ElementsAre("timeline A large", "timeline A large"))
      << "the first one was taken back";
  EXPECT_EQ(extension_.waiting().size(), 1U);
  EXPECT_EQ(extension_.lastRequest("A")->configuration, chosen);
  extension_.setSilent(false);
  EXPECT_THAT(asked(), IsEmpty());
  EXPECT_FALSE(desk_->card("1")->isAwaited);
  ASSERT_TRUE(desk_->configure("1", chosen));
  EXPECT_THAT(asked(), IsEmpty()) << "nothing has changed";
}

TEST_F(WidgetDeskTest, MovesAWidgetWithoutAskingForIt) {
  startAndSettle();
  ASSERT_TRUE(desk_->move("2", {"HDMI-1", -3, 2'000'000}));
  EXPECT_EQ(desk_->card("2")->placed.position, (MonitorPosition{"HDMI-1", -3, 100'000}));
  EXPECT_THAT(asked(), IsEmpty());
  EXPECT_THAT(told(), ElementsAre("changed 2"));
  EXPECT_EQ(stored(), placed());
}

TEST_F(WidgetDeskTest, MonitorsThatComeAndGoLeaveThePositionsAlone) {
  startAndSettle();
  const auto before = placed();
  desk_->monitorsChanged({});
  desk_->monitorsChanged({{.name = "tiny", .size = {200, 200}, .workArea = {}, .isPrimary = true}});
  EXPECT_EQ(placed(), before);
  EXPECT_EQ(stored(), before);
}

TEST_F(WidgetDeskTest, APressedButtonHasItsIntentPerformedAndTheWidgetAskedFor) {
  startAndSettle();
  desk_->press("1", "RefreshAppIntent");
  EXPECT_TRUE(desk_->card("1")->isAwaited);
  desk_->press("1", "RefreshAppIntent");
  EXPECT_THAT(asked(), ElementsAre("perform RefreshAppIntent", "timeline A large"))
      << "once, however often it is pressed meanwhile";
  EXPECT_FALSE(desk_->card("1")->isAwaited);
  desk_->press("1", "RefreshAppIntent");
  EXPECT_THAT(asked(), ElementsAre("perform RefreshAppIntent", "timeline A large"));
}

TEST_F(WidgetDeskTest, AnIntentThatFailsHasTheWidgetAskedForAllTheSame) {
  startAndSettle();
  extension_.setFailure(ExtensionFailure::refused);
  desk_->press("2", "RefreshAppIntent");
  EXPECT_THAT(asked(), ElementsAre("perform RefreshAppIntent", "timeline B medium"));
}

TEST_F(WidgetDeskTest, TheHostsOwnIntentAndOverlongOnesNeverReachTheExtension) {
  startAndSettle();
  desk_->press("1", tryAgainIntent);
  desk_->press("1", std::string(257, 'x'));
  EXPECT_THAT(asked(), IsEmpty());
  EXPECT_EQ(extension_.tries(), 0);
}

TEST_F(WidgetDeskTest, AFullDiskLeavesTheDesktopAsTheUserHasMadeIt) {
  startAndSettle();
  const auto before = stored();
  files_.setFreeBytes(0);
  ASSERT_TRUE(desk_->move("1", {"DP-1", 7, 7}));
  EXPECT_EQ(desk_->card("1")->placed.position.x, 7);
  EXPECT_EQ(stored(), before);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("make room on the disk")));
}

TEST_F(WidgetDeskTest, WhatAFullDiskDidNotTakeIsSavedOnceThereIsRoom) {
  startAndSettle();
  files_.setFreeBytes(0);
  ASSERT_TRUE(desk_->move("1", {"DP-1", 7, 7}));
  dispatch_.advance(std::chrono::minutes(11));
  EXPECT_EQ(log_.lines().size(), 1U) << "said once, however often it is tried";
  files_.setFreeBytes(std::nullopt);
  dispatch_.advance(std::chrono::minutes(5));
  EXPECT_EQ(stored(), placed());
}

TEST_F(WidgetDeskTest, WhatAFullDiskDidNotTakeIsSavedAtTheEnd) {
  startAndSettle();
  files_.setFreeBytes(0);
  ASSERT_TRUE(desk_->move("1", {"DP-1", 7, 7}));
  const auto before = placed();
  files_.setFreeBytes(std::nullopt);
  desk_.reset();
  EXPECT_EQ(stored(), before);
}

TEST_F(WidgetDeskTest, AnIdOfARemovedWidgetIsNotGivenAgain) {
  startAndSettle();
  ASSERT_TRUE(desk_->remove("3"));
  EXPECT_EQ(desk_->add("C", {}, {}, {}), "4");
  ASSERT_TRUE(desk_->remove("4"));
  EXPECT_EQ(desk_->add("C", {}, {}, {}), "5");
}

TEST_F(WidgetDeskTest, AnIdThatStoodInTheFileIsNotGivenAgain) {
  files_.putFile(
      file_, R"({"version":1,"widgets":[{"id":"7","kind":"A","family":"small"},)"
             R"({"id":"8","kind":"Gone","family":"small"},{"id":"9","kind":"C","family":"vast"},)"
             R"({"id":"2","kind":"C","family":"small"}]})");
  startAndSettle();
  ASSERT_TRUE(desk_->remove("7"));
  EXPECT_EQ(desk_->add("C", {}, {}, {}), "10");
}

}  // namespace
}  // namespace lanternfold
