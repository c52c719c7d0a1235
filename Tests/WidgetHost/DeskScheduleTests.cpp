// When the desk asks, and what its cards show when no answer comes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/WidgetHost/DeskWorld.h"
#include "WidgetHost/Desk/HostCards.h"

namespace lanternfold {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::vector<std::string> allTimelines{"timeline A large", "timeline B medium",
                                            "timeline C small"};

using DeskScheduleTest = DeskWorld;

TEST_F(DeskScheduleTest, AsksAnewEveryFiveMinutes) {
  startAndSettle();
  EXPECT_THAT(askedWithin(minutes(5) - milliseconds(1)), IsEmpty());
  EXPECT_EQ(askedWithin(milliseconds(1)), allTimelines);
  EXPECT_EQ(askedWithin(minutes(15)).size(), 9U);
}

TEST_F(DeskScheduleTest, OneTimerServesAllWidgets) {
  startAndSettle();
  EXPECT_EQ(dispatch_.waitingWorks(), 1U);
}

TEST_F(DeskScheduleTest, ATimelineThatIsNeverToBeAskedForAgainIsOnlyWhenTheUserAsks) {
  extension_.setTimeline([](const std::string& kind, const WidgetRequest&) {
    return Timeline<ViewEntry>{.entries = {{.date = {}, .view = text(kind, {})}},
                               .policy = TimelineReloadPolicy::never};
  });
  startAndSettle();
  desk_->networkPathChanged();
  desk_->resumed();
  EXPECT_THAT(askedWithin(hours(24)), IsEmpty());
  ASSERT_TRUE(desk_->reload("2"));
  EXPECT_THAT(asked(), ElementsAre("timeline B medium"));
  desk_->reloadAll();
  EXPECT_EQ(asked(), allTimelines);
  desk_->press("3", "RefreshAppIntent");
  EXPECT_THAT(asked(), ElementsAre("perform RefreshAppIntent", "timeline C small"));
}

TEST_F(DeskScheduleTest, ShowsEachEntryFromItsDateOn) {
  extension_.setTimeline([this](const std::string& kind, const WidgetRequest&) {
    const auto now = clock_.now();
    return Timeline<ViewEntry>{.entries = {{.date = now + hours(2), .view = text("later", {})},
                                           {.date = now - hours(2), .view = text("past", {})},
                                           {.date = now, .view = text(kind + " now", {})},
                                           {.date = now + hours(1), .view = text("next", {})}},
                               .policy = TimelineReloadPolicy::atEnd};
  });
  startAndSettle();
  EXPECT_EQ(saidBy("1"), "A now");
  EXPECT_THAT(askedWithin(hours(1) - milliseconds(1)), IsEmpty());
  EXPECT_EQ(saidBy("1"), "A now");
  EXPECT_THAT(askedWithin(milliseconds(1)), IsEmpty());
  EXPECT_EQ(saidBy("1"), "next");
  EXPECT_THAT(told(), Contains("changed 1"));
  EXPECT_EQ(askedWithin(hours(1)), allTimelines) << "its end";
  EXPECT_EQ(saidBy("1"), "A now");
}

TEST_F(DeskScheduleTest, ATimelineWithoutEntriesLeavesWhatIsShown) {
  startAndSettle();
  extension_.setTimeline(
      [](const std::string&, const WidgetRequest&) { return Timeline<ViewEntry>{}; });
  desk_->reloadAll();
  dispatch_.runReady();
  EXPECT_EQ(saidBy("1"), "A");
}

TEST_F(DeskScheduleTest, AChangeOfTheNetworkHasAllAskedForOnceItIsOver) {
  startAndSettle();
  for (int change = 0; change < 4; ++change) {
    desk_->networkPathChanged();
    EXPECT_THAT(askedWithin(milliseconds(700)), IsEmpty());
  }
  EXPECT_EQ(askedWithin(milliseconds(300)), allTimelines);
  EXPECT_THAT(askedWithin(minutes(4)), IsEmpty());
}

TEST_F(DeskScheduleTest, ANetworkThatChangesWithoutEndIsShownEveryFiveSeconds) {
  startAndSettle();
  std::size_t count = 0;
  for (int change = 0; change < 60; ++change) {
    desk_->networkPathChanged();
    count += askedWithin(milliseconds(500)).size();
  }
  EXPECT_EQ(count, 6U * 3U) << "in half a minute";
}

TEST_F(DeskScheduleTest, AfterASuspensionAllAreAskedForAtOnce) {
  startAndSettle();
  desk_->resumed();
  EXPECT_EQ(asked(), allTimelines);
}

TEST_F(DeskScheduleTest, NothingIsAskedForWhileTheSessionIsLocked) {
  startAndSettle();
  desk_->setLocked(true);
  desk_->networkPathChanged();
  desk_->resumed();
  desk_->reloadAll();
  EXPECT_THAT(askedWithin(hours(10)), IsEmpty());
  desk_->setLocked(false);
  EXPECT_EQ(asked(), allTimelines);
  EXPECT_THAT(askedWithin(minutes(4)), IsEmpty()) << "once";
}

TEST_F(DeskScheduleTest, NoTimerRunsWhileTheSessionIsLocked) {
  startAndSettle();
  desk_->setLocked(true);
  dispatch_.advance(minutes(6));
  EXPECT_EQ(dispatch_.waitingWorks(), 0U);
}

TEST_F(DeskScheduleTest, AStartInALockedSessionWaits) {
  desk_->setLocked(true);
  desk_->monitorsChanged(oneMonitor());
  desk_->start();
  EXPECT_THAT(askedWithin(hours(1)), IsEmpty());
  desk_->setLocked(false);
  EXPECT_EQ(asked().size(), 7U);
}

TEST_F(DeskScheduleTest, AfterASampleThatComesWhileLockedTheTimelineWaits) {
  startAndSettle();
  extension_.setSilent(true);
  ASSERT_TRUE(desk_->resize("1", WidgetFamily::small));
  EXPECT_THAT(asked(), ElementsAre("placeholder A small"));
  desk_->setLocked(true);
  extension_.setSilent(false);
  EXPECT_THAT(asked(), IsEmpty());
  EXPECT_EQ(saidBy("1"), "placeholder A");
  desk_->setLocked(false);
  EXPECT_THAT(asked(), ElementsAre("timeline A small"));
}

TEST_F(DeskScheduleTest, AWidgetIsNeverAskedForTwiceAtTheSameTime) {
  startAndSettle();
  extension_.setSilent(true);
  desk_->reloadAll();
  EXPECT_EQ(asked(), allTimelines);
  desk_->reloadAll();
  desk_->resumed();
  desk_->networkPathChanged();
  EXPECT_THAT(askedWithin(seconds(20)), IsEmpty());
  extension_.setSilent(false);
  EXPECT_EQ(asked(), allTimelines) << "once more for all of that";
}

TEST_F(DeskScheduleTest, AWidgetWithoutASampleIsAskedForItsTimeline) {
  desk_->monitorsChanged(oneMonitor());
  extension_.setSilent(true);
  desk_->start();
  extension_.answerAll();
  dispatch_.runReady();
  extension_.failAll(ExtensionFailure::refused);
  dispatch_.runReady();
  extension_.setSilent(false);
  dispatch_.runReady();
  EXPECT_EQ(saidBy("1"), "A");
  EXPECT_FALSE(desk_->card("1")->isStale);
}

TEST_F(DeskScheduleTest, AfterTwoMissesInARowACardIsMarkedStaleUntilTheNextAnswer) {
  startAndSettle();
  extension_.setFailure(ExtensionFailure::timedOut);
  dispatch_.advance(minutes(5));
  EXPECT_FALSE(desk_->card("1")->isStale);
  EXPECT_EQ(saidBy("1"), "A") << "the last good entry stays";
  (void)told();
  dispatch_.advance(minutes(5));
  EXPECT_TRUE(desk_->card("1")->isStale);
  EXPECT_EQ(saidBy("1"), "A, Not up to date, since the last updates have failed");
  EXPECT_THAT(told(), ElementsAre("changed 1", "changed 2", "changed 3"));
  dispatch_.advance(minutes(5));
  EXPECT_THAT(told(), IsEmpty()) << "as stale as before";
  extension_.setFailure(std::nullopt);
  desk_->reloadAll();
  dispatch_.runReady();
  EXPECT_FALSE(desk_->card("1")->isStale);
  EXPECT_EQ(saidBy("1"), "A");
}

/// A name once stayed on its card for as long as the extension did not answer.
TEST_F(DeskScheduleTest, WhatIsForgottenIsNotShownAgainWhenNoAnswerComes) {
  startAndSettle();
  extension_.setFailure(ExtensionFailure::timedOut);
  desk_->forgetAll();
  EXPECT_EQ(asked().size(), 3U);
  EXPECT_THAT(saidBy("1"), Not(HasSubstr("A")));
  EXPECT_FALSE(desk_->card("1")->date.has_value());
  extension_.setFailure(std::nullopt);
  dispatch_.advance(minutes(5));
  EXPECT_EQ(saidBy("1"), "A");
}

TEST_F(DeskScheduleTest, AnAnswerThatWasUnderWayIsForgottenAsWell) {
  startAndSettle();
  extension_.setSilent(true);
  desk_->reloadAll();
  EXPECT_EQ(asked(), allTimelines);
  desk_->forgetAll();
  extension_.answerAll();
  dispatch_.runReady();
  EXPECT_NE(saidBy("1"), "A");
  extension_.setSilent(false);
  dispatch_.runReady();
  EXPECT_EQ(saidBy("1"), "A");
}

TEST_F(DeskScheduleTest, ASampleIsNotKeptForFactsWhenNoTimelineComes) {
  startAndSettle();
  extension_.setSilent(true);
  ASSERT_TRUE(desk_->resize("1", WidgetFamily::small));
  dispatch_.runReady();
  extension_.answerAll();
  dispatch_.runReady();
  EXPECT_EQ(saidBy("1"), "placeholder A");
  extension_.failAll(ExtensionFailure::timedOut);
  dispatch_.runReady();
  EXPECT_TRUE(desk_->card("1")->isSample);
  dispatch_.advance(minutes(5));
  extension_.failAll(ExtensionFailure::timedOut);
  dispatch_.runReady();
  EXPECT_EQ(saidBy("1"), "No data yet, Try again");
  EXPECT_FALSE(desk_->card("1")->isSample);
  EXPECT_TRUE(desk_->card("1")->isStale);
}

TEST_F(DeskScheduleTest, AnExtensionThatCrashedIsAskedAgainAtOnce) {
  startAndSettle();
  extension_.setSilent(true);
  desk_->reloadAll();
  extension_.failAll(ExtensionFailure::gone);
  extension_.setSilent(false);
  dispatch_.runReady();
  EXPECT_EQ(extension_.takeAsked().size(), 6U);
  EXPECT_FALSE(desk_->card("1")->isStale);
  EXPECT_FALSE(desk_->card("1")->isAwaited);
}

TEST_F(DeskScheduleTest, AnExtensionThatIsGoneForGoodIsNotAskedInALoop) {
  startAndSettle();
  extension_.setFailure(ExtensionFailure::gone);
  desk_->reloadAll();
  EXPECT_EQ(askedWithin(seconds(60)).size(), 3U * 62U) << "twice at first, then every second";
}

TEST_F(DeskScheduleTest, ACatalogueThatDoesNotComeIsAskedForAgain) {
  startAndSettle();
  makeDesk();
  extension_.setFailure(ExtensionFailure::timedOut);
  desk_->start();
  EXPECT_THAT(asked(), ElementsAre("list"));
  EXPECT_THAT(askedWithin(minutes(5)), ElementsAre("list"));
  EXPECT_TRUE(desk_->card("1")->isStale);
  EXPECT_EQ(saidBy("1"), "No data yet, Try again");
  extension_.setFailure(std::nullopt);
  desk_->reloadAll();
  EXPECT_THAT(asked(), Contains("timeline A large"));
  EXPECT_EQ(saidBy("1"), "A");
  EXPECT_FALSE(desk_->card("1")->isStale);
  EXPECT_FALSE(desk_->card("1")->isAwaited);
}

class LeftAloneTest : public DeskWorld {
 protected:
  void leaveAlone() {
    extension_.failTooOften();
    settle();
  }
};

TEST_F(LeftAloneTest, EveryCardSaysSoAndNothingIsAsked) {
  startAndSettle();
  extension_.failTooOften();
  EXPECT_THAT(told(), ElementsAre("changed 1", "changed 2", "changed 3"));
  for (const Card& card : desk_->cards()) {
    EXPECT_EQ(card.view, quietCard(strings_, card.placed.family));
  }
  EXPECT_EQ(saidBy("1"), "This widget has stopped, since it failed several times., Try again");
  EXPECT_THAT(askedWithin(hours(24)), IsEmpty());
}

TEST_F(LeftAloneTest, AQuestionThatFailsSoEndsTheQuestions) {
  startAndSettle();
  extension_.setSilent(true);
  desk_->reloadAll();
  dispatch_.runReady();
  (void)extension_.takeAsked();
  extension_.failTooOften();
  EXPECT_THAT(askedWithin(hours(1)), IsEmpty());
}

TEST_F(LeftAloneTest, TheButtonLetsItBeStartedAgain) {
  startAndSettle();
  leaveAlone();
  desk_->press("2", "RefreshAppIntent");
  EXPECT_THAT(asked(), IsEmpty()) << "no card has that button now";
  desk_->press("2", tryAgainIntent);
  EXPECT_EQ(extension_.tries(), 1);
  EXPECT_EQ(asked(), allTimelines);
  EXPECT_EQ(saidBy("2"), "B");
}

TEST_F(LeftAloneTest, SoDoesAReload) {
  startAndSettle();
  leaveAlone();
  ASSERT_TRUE(desk_->reload("3"));
  EXPECT_EQ(asked(), allTimelines);
  leaveAlone();
  desk_->reloadAll();
  EXPECT_EQ(asked(), allTimelines);
  EXPECT_EQ(extension_.tries(), 2);
}

TEST_F(LeftAloneTest, UntilTheNextAnswerTheLastGoodEntryIsShownAgain) {
  startAndSettle();
  leaveAlone();
  extension_.setSilent(true);
  desk_->press("1", tryAgainIntent);
  EXPECT_EQ(saidBy("1"), "A");
  EXPECT_THAT(told(), Contains("changed 1"));
}

TEST_F(LeftAloneTest, ADeskThatStartsThenShowsItToo) {
  startAndSettle();
  leaveAlone();
  makeDesk();
  desk_->start();
  EXPECT_THAT(askedWithin(hours(1)), IsEmpty());
  EXPECT_THAT(saidBy("1"), HasSubstr("Try again"));
  desk_->press("1", tryAgainIntent);
  dispatch_.runReady();
  EXPECT_EQ(saidBy("1"), "A");
}

}  // namespace
}  // namespace lanternfold
