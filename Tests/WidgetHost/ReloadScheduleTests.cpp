#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WidgetHost/Schedule/ReloadSchedule.h"

namespace lanternfold {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using Hold = ReloadSchedule::Hold;

/// A schedule of the widgets "a" and "b", and its time.
class ReloadScheduleTest : public testing::Test {
 protected:
  using Due = std::vector<std::string>;

  ReloadScheduleTest() {
    schedule_.add("a", now_);
    schedule_.add("b", now_);
  }

  /// Both have answered just now.
  void answerFirst(std::optional<ReloadSchedule::Duration> untilEnd = seconds(0)) {
    for (const std::string& id : schedule_.takeDue(now_)) answer(id, untilEnd);
  }
  void answer(const std::string& id,
              std::optional<ReloadSchedule::Duration> untilEnd = seconds(0)) {
    schedule_.answered(id, untilEnd, now_);
  }
  void fail(const std::string& id, ExtensionFailure failure = ExtensionFailure::timedOut) {
    schedule_.failed(id, failure, now_);
  }
  Due due() { return schedule_.takeDue(now_); }
  void pass(ReloadSchedule::Duration time) { now_ += time; }
  /// From now to the next due moment.
  std::optional<ReloadSchedule::Duration> untilNext() const {
    const auto next = schedule_.nextDue();
    return next ? std::optional(*next - now_) : std::nullopt;
  }

  ReloadSchedule schedule_{minutes(5)};
  ReloadSchedule::TimePoint now_{hours(1)};
};

TEST_F(ReloadScheduleTest, ANewWidgetIsDueAtOnce) {
  EXPECT_EQ(untilNext(), seconds(0));
  EXPECT_THAT(due(), ElementsAre("a", "b"));
  EXPECT_EQ(untilNext(), std::nullopt) << "both are being asked for";
  EXPECT_THAT(due(), IsEmpty());
}

TEST_F(ReloadScheduleTest, ATimelineThatHasEndedIsAskedForOnceTheIntervalHasPassed) {
  answerFirst();
  EXPECT_EQ(untilNext(), minutes(5));
  pass(minutes(5) - milliseconds(1));
  EXPECT_THAT(due(), IsEmpty());
  pass(milliseconds(1));
  EXPECT_THAT(due(), ElementsAre("a", "b"));
}

TEST_F(ReloadScheduleTest, ATimelineIsNotAskedForBeforeItsEnd) {
  answerFirst(minutes(40));
  EXPECT_EQ(untilNext(), minutes(40));
}

TEST_F(ReloadScheduleTest, ATimelineThatEndedLongAgoOrInAThousandYearsIsNoTrouble) {
  (void)due();
  answer("a", -ReloadSchedule::Duration::max());
  answer("b", ReloadSchedule::Duration::max());
  EXPECT_EQ(untilNext(), minutes(5));
  schedule_.remove("a");
  EXPECT_EQ(untilNext(), hours(24 * 365));
}

TEST_F(ReloadScheduleTest, ATimelineThatIsNeverToBeAskedForAgainIsOnlyWhenSomebodyAsks) {
  (void)due();
  answer("a", std::nullopt);
  answer("b");
  schedule_.pathChanged(now_);
  schedule_.resumed(now_);
  pass(hours(1));
  EXPECT_THAT(due(), ElementsAre("b"));
  answer("b");
  schedule_.wish("a", now_);
  EXPECT_THAT(due(), ElementsAre("a"));
  answer("a", std::nullopt);
  schedule_.wishAll(now_);
  EXPECT_THAT(due(), ElementsAre("a", "b"));
}

TEST_F(ReloadScheduleTest, AWishThatFailsIsTriedAgainWhateverTheTimelineHasSaid) {
  (void)due();
  answer("a", std::nullopt);
  schedule_.wish("a", now_);
  (void)due();
  fail("a");
  pass(minutes(5));
  EXPECT_THAT(due(), ElementsAre("a"));
}

TEST_F(ReloadScheduleTest, AWishIsDueAtOnce) {
  answerFirst();
  pass(seconds(10));
  schedule_.wish("b", now_);
  EXPECT_EQ(untilNext(), seconds(0));
  EXPECT_THAT(due(), ElementsAre("b"));
  answer("b");
  EXPECT_EQ(untilNext(), minutes(5) - seconds(10)) << "the other one's moment stays";
}

TEST_F(ReloadScheduleTest, WishesWhileItIsAskedForAreRememberedOnce) {
  (void)due();
  for (int wish = 0; wish < 5; ++wish) schedule_.wish("a", now_);
  schedule_.resumed(now_);
  EXPECT_THAT(due(), IsEmpty()) << "never twice at the same time";
  answer("a");
  EXPECT_THAT(due(), ElementsAre("a"));
  answer("a");
  EXPECT_THAT(due(), IsEmpty());
}

TEST_F(ReloadScheduleTest, AChangeOfTheNetworkIsWaitedOutForASecond) {
  answerFirst();
  pass(minutes(1));
  schedule_.pathChanged(now_);
  EXPECT_EQ(untilNext(), seconds(1));
  EXPECT_THAT(due(), IsEmpty());
  pass(milliseconds(900));
  schedule_.pathChanged(now_);
  pass(milliseconds(900));
  EXPECT_THAT(due(), IsEmpty());
  pass(milliseconds(100));
  EXPECT_THAT(due(), ElementsAre("a", "b"));
  answer("a");
  answer("b");
  EXPECT_EQ(untilNext(), minutes(5)) << "once for all of the changes";
}

TEST_F(ReloadScheduleTest, ChangesWithoutAnEndAreWaitedOutNoLongerThanFiveSeconds) {
  answerFirst();
  ReloadSchedule::Duration waited{};
  for (; due().empty(); waited += milliseconds(500)) {
    ASSERT_LT(waited, seconds(10));
    schedule_.pathChanged(now_);
    pass(milliseconds(500));
  }
  EXPECT_EQ(waited, seconds(5));
}

TEST_F(ReloadScheduleTest, AfterASuspensionAllAreDueAtOnce) {
  answerFirst();
  schedule_.resumed(now_);
  EXPECT_THAT(due(), ElementsAre("a", "b"));
}

TEST_F(ReloadScheduleTest, NothingIsAskedForWhileTheSessionIsLocked) {
  answerFirst();
  schedule_.setHeld(Hold::locked, true);
  pass(hours(8));
  schedule_.wish("a", now_);
  schedule_.pathChanged(now_);
  schedule_.resumed(now_);
  EXPECT_THAT(due(), IsEmpty());
  EXPECT_EQ(untilNext(), std::nullopt) << "no timer wakes the machine";
  schedule_.setHeld(Hold::locked, false);
  EXPECT_LE(*untilNext(), seconds(0));
  EXPECT_THAT(due(), ElementsAre("a", "b"));
}

TEST_F(ReloadScheduleTest, WhatIsNotDueYetAfterUnlockingKeepsItsMoment) {
  answerFirst();
  schedule_.setHeld(Hold::locked, true);
  pass(minutes(1));
  schedule_.setHeld(Hold::locked, false);
  EXPECT_EQ(untilNext(), minutes(4));
}

TEST_F(ReloadScheduleTest, AnAnswerThatComesWhileLockedCounts) {
  (void)due();
  schedule_.setHeld(Hold::locked, true);
  answer("a");
  fail("b", ExtensionFailure::gone);
  EXPECT_THAT(due(), IsEmpty());
  schedule_.setHeld(Hold::locked, false);
  EXPECT_THAT(due(), ElementsAre("b"));
}

TEST_F(ReloadScheduleTest, BothHoldsMustEnd) {
  schedule_.setHeld(Hold::locked, true);
  schedule_.setHeld(Hold::leftAlone, true);
  schedule_.setHeld(Hold::locked, false);
  EXPECT_THAT(due(), IsEmpty());
  schedule_.setHeld(Hold::leftAlone, false);
  EXPECT_THAT(due(), ElementsAre("a", "b"));
}

TEST_F(ReloadScheduleTest, WhatFailsIsAskedForAgainAfterTheInterval) {
  (void)due();
  fail("a", ExtensionFailure::timedOut);
  fail("b", ExtensionFailure::refused);
  EXPECT_EQ(untilNext(), minutes(5));
  pass(minutes(5));
  EXPECT_THAT(due(), ElementsAre("a", "b"));
}

TEST_F(ReloadScheduleTest, AnExtensionThatIsGoneIsAskedAgainAtOnceAndThenWithAPause) {
  (void)due();
  fail("a", ExtensionFailure::gone);
  EXPECT_THAT(due(), ElementsAre("a"));
  fail("a", ExtensionFailure::gone);
  EXPECT_EQ(untilNext(), seconds(1));
  pass(seconds(1));
  EXPECT_THAT(due(), ElementsAre("a"));
  schedule_.wish("a", now_);
  fail("a", ExtensionFailure::gone);
  EXPECT_EQ(untilNext(), seconds(1)) << "a wish is no reason to ask faster";
  pass(seconds(1));
  (void)due();
  answer("a");
  pass(minutes(5));
  (void)due();
  fail("a", ExtensionFailure::gone);
  EXPECT_THAT(due(), ElementsAre("a")) << "the first one again";
}

TEST_F(ReloadScheduleTest, AnExtensionThatIsLeftAloneIsAskedWhenItIsNotAnyMore) {
  (void)due();
  fail("a", ExtensionFailure::tooOften);
  schedule_.setHeld(Hold::leftAlone, true);
  pass(hours(1));
  EXPECT_THAT(due(), IsEmpty());
  schedule_.setHeld(Hold::leftAlone, false);
  EXPECT_THAT(due(), ElementsAre("a"));
}

TEST_F(ReloadScheduleTest, AQuestionThatWasTakenBackIsAskedAgainAndIsNoMiss) {
  (void)due();
  for (int times = 0; times < 3; ++times) {
    fail("a", ExtensionFailure::cancelled);
    EXPECT_THAT(due(), ElementsAre("a"));
  }
  schedule_.putBack("a", now_);
  EXPECT_FALSE(schedule_.isStale("a"));
  EXPECT_THAT(due(), ElementsAre("a"));
}

TEST_F(ReloadScheduleTest, TwoMissesInARowAreStaleUntilAnAnswer) {
  (void)due();
  fail("a");
  EXPECT_FALSE(schedule_.isStale("a"));
  pass(minutes(5));
  (void)due();
  fail("a");
  EXPECT_TRUE(schedule_.isStale("a"));
  EXPECT_FALSE(schedule_.isStale("b"));
  pass(minutes(5));
  (void)due();
  fail("a", ExtensionFailure::refused);
  EXPECT_TRUE(schedule_.isStale("a"));
  pass(minutes(5));
  (void)due();
  answer("a");
  EXPECT_FALSE(schedule_.isStale("a"));
  schedule_.wish("a", now_);
  (void)due();
  fail("a");
  EXPECT_FALSE(schedule_.isStale("a")) << "counted anew";
}

TEST_F(ReloadScheduleTest, WhatIsRemovedIsWaitedForNoMore) {
  schedule_.remove("a");
  schedule_.remove("a");
  EXPECT_THAT(due(), ElementsAre("b"));
  schedule_.remove("b");
  EXPECT_EQ(untilNext(), std::nullopt);
}

using ReloadScheduleDeathTest = ReloadScheduleTest;

TEST_F(ReloadScheduleDeathTest, AWidgetIsScheduledOnceAndBeforeItIsSpokenOf) {
  EXPECT_DEATH(schedule_.add("a", now_), "a widget was scheduled twice");
  EXPECT_DEATH(schedule_.wish("c", now_), "a widget that was never scheduled");
}

}  // namespace
}  // namespace lanternfold
