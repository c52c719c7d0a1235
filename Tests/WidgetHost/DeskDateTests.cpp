// What a desk makes of dates: entries of later ones, clocks that are set, and midnight.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/WidgetHost/DeskWorld.h"

namespace lanternfold {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

using DeskDateTest = DeskWorld;

TEST_F(DeskDateTest, AClockThatIsSetForwardShowsTheEntryOfThatDate) {
  extension_.setTimeline([this](const std::string&, const WidgetRequest&) {
    return Timeline<ViewEntry>{
        .entries = {{.date = clock_.now(), .view = text("now", {})},
                    {.date = clock_.now() + hours(2), .view = text("later", {})}},
        .policy = TimelineReloadPolicy::never};
  });
  startAndSettle();
  clock_.stepWallClock(hours(3));
  desk_->resumed();
  EXPECT_EQ(saidBy("1"), "later") << "as after a suspension, in which no steady clock goes on";
}

TEST_F(DeskDateTest, AnAnswerAfterTheClockWasSetIsOfTheNewDate) {
  startAndSettle();
  extension_.setSilent(true);
  desk_->reloadAll();
  extension_.setTimeline([this](const std::string&, const WidgetRequest&) {
    return Timeline<ViewEntry>{
        .entries = {{.date = clock_.now(), .view = text("now", {})},
                    {.date = clock_.now() + minutes(20), .view = text("later", {})}},
        .policy = TimelineReloadPolicy::atEnd};
  });
  clock_.stepWallClock(hours(3));
  extension_.setSilent(false);
  settle();
  EXPECT_THAT(askedWithin(minutes(20) - seconds(1)), IsEmpty());
  EXPECT_EQ(askedWithin(seconds(1)).size(), 3U);
}

TEST_F(DeskDateTest, AClockThatIsSetBackWaitsForTheDateOfTheNextEntry) {
  extension_.setTimeline([date = clock_.now()](const std::string&, const WidgetRequest&) {
    return Timeline<ViewEntry>{.entries = {{.date = date, .view = text("now", {})},
                                           {.date = date + hours(2), .view = text("later", {})}},
                               .policy = TimelineReloadPolicy::never};
  });
  startAndSettle();
  clock_.stepWallClock(-hours(5));
  desk_->networkPathChanged();
  dispatch_.advance(hours(3));
  EXPECT_EQ(saidBy("1"), "now");
  dispatch_.advance(hours(4));
  EXPECT_EQ(saidBy("1"), "later");
}

/// One that is never to be asked for again, and says when it was made.
Timeline<ViewEntry> datedTimeline(const Clock& clock) {
  return {.entries = {{.date = clock.now(), .view = drawingTime("%@", {})}},
          .policy = TimelineReloadPolicy::never};
}

TEST_F(DeskDateTest, WhatWasMadeTodayIsDrawnAnewAtMidnight) {
  extension_.setTimeline([this](const std::string& kind, const WidgetRequest&) {
    auto timeline = datedTimeline(clock_);
    if (kind != "B") timeline.entries.front().view = text(kind, {});
    return timeline;
  });
  clock_.advance(hours(20));
  startAndSettle();
  const auto made = clock_.now();
  dispatch_.advance(hours(4) - seconds(1));
  EXPECT_THAT(told(), IsEmpty());
  dispatch_.advance(seconds(3));
  EXPECT_THAT(told(), ElementsAre("changed 2")) << "the others say no time";
  EXPECT_EQ(desk_->card("2")->date, made) << "the date of the answer, not of the drawing";
  dispatch_.advance(hours(23));
  EXPECT_THAT(told(), IsEmpty());
  dispatch_.advance(hours(1));
  EXPECT_THAT(told(), ElementsAre("changed 2"));
}

TEST_F(DeskDateTest, WithoutATimeOnACardMidnightWakesNobody) {
  extension_.setTimeline([this](const std::string& kind, const WidgetRequest&) {
    auto timeline = datedTimeline(clock_);
    timeline.entries.front().view = text(kind, {});
    return timeline;
  });
  startAndSettle();
  EXPECT_EQ(dispatch_.waitingWorks(), 0U);
}

TEST_F(DeskDateTest, ATimeIsRenewedAfterAMidnightInALockedSession) {
  extension_.setTimeline(
      [this](const std::string&, const WidgetRequest&) { return datedTimeline(clock_); });
  startAndSettle();
  desk_->setLocked(true);
  dispatch_.advance(hours(30));
  EXPECT_THAT(told(), IsEmpty());
  desk_->setLocked(false);
  EXPECT_THAT(told(), ElementsAre("changed 1", "changed 2", "changed 3"));
}

}  // namespace
}  // namespace lanternfold
