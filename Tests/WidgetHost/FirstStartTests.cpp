// The first start of a desk whose extension is broken, missing or silent: what stands there, and
// what takes its place.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/WidgetHost/DeskWorld.h"
#include "WidgetHost/Desk/HostCards.h"

namespace lanternfold {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class FirstStartTest : public DeskWorld {
 protected:
  FirstStartTest() {
    for (const WidgetDescription& widget : threeWidgets()) {
      options_.knownWidgets.push_back({widget.kind, widget.supportedFamilies});
    }
    makeDesk();
  }

  void startBroken(ExtensionFailure failure = ExtensionFailure::gone) {
    extension_.setFailure(failure);
    desk_->monitorsChanged(oneMonitor());
    desk_->start();
    dispatch_.runReady();
  }
  [[nodiscard]] std::vector<View> views() const {
    std::vector<View> views;
    for (const Card& card : desk_->cards()) views.push_back(card.view);
    return views;
  }
};

TEST_F(FirstStartTest, ABrokenExtensionLeavesNoEmptyDesktop) {
  startBroken();
  const auto cards = desk_->cards();
  ASSERT_EQ(cards.size(), 3U);
  EXPECT_EQ(cards[0].placed, (PlacedWidget{.id = "1",
                                           .kind = "A",
                                           .family = WidgetFamily::large,
                                           .configuration = {},
                                           .position = {"DP-1", 1532, 24}}));
  EXPECT_EQ(saidBy("1"), "No data yet, Try again");
  EXPECT_THAT(observer_.takeTold(), testing::IsSupersetOf({"added 1", "added 2", "added 3"}));
  EXPECT_EQ(files_.bytes(file_), std::nullopt) << "nobody has chosen these";
}

TEST_F(FirstStartTest, ASilentExtensionLeavesNoEmptyDesktop) {
  extension_.setSilent(true);
  desk_->monitorsChanged(oneMonitor());
  desk_->start();
  dispatch_.runReady();
  EXPECT_THAT(desk_->cards(), IsEmpty()) << "it may be about to say something";
  extension_.failAll(ExtensionFailure::timedOut);
  dispatch_.runReady();
  EXPECT_EQ(desk_->cards().size(), 3U);
  EXPECT_THAT(saidBy("2"), HasSubstr("Try again"));
}

TEST_F(FirstStartTest, AnExtensionThatIsLeftAloneLeavesNoEmptyDesktop) {
  extension_.setSilent(true);
  desk_->monitorsChanged(oneMonitor());
  desk_->start();
  dispatch_.runReady();
  extension_.failTooOften();
  dispatch_.runReady();
  EXPECT_EQ(desk_->cards().size(), 3U);
  EXPECT_THAT(views(), Contains(quietCard(strings_, WidgetFamily::medium)));
  extension_.setSilent(false);
  desk_->press("1", tryAgainIntent);
  dispatch_.runReady();
  EXPECT_EQ(saidBy("1"), "A");
}

TEST_F(FirstStartTest, OneThatWasLeftAloneBeforeLeavesNoEmptyDesktop) {
  extension_.failTooOften();
  dispatch_.runReady();
  desk_->monitorsChanged(oneMonitor());
  desk_->start();
  EXPECT_EQ(desk_->cards().size(), 3U);
}

TEST_F(FirstStartTest, AnExtensionWithoutWidgetsIsABrokenOne) {
  extension_.setWidgets({});
  desk_->monitorsChanged(oneMonitor());
  desk_->start();
  dispatch_.runReady();
  EXPECT_EQ(desk_->cards().size(), 3U);
  EXPECT_THAT(saidBy("1"), HasSubstr("Try again"));
  EXPECT_THAT(desk_->catalogue(), IsEmpty());
  extension_.setWidgets(threeWidgets());
  (void)extension_.takeAsked();
  desk_->press("1", tryAgainIntent);
  EXPECT_THAT(asked(), Contains("list"));
  EXPECT_EQ(saidBy("1"), "A");
}

TEST_F(FirstStartTest, WithoutAMonitorTheyWaitForOne) {
  extension_.setFailure(ExtensionFailure::gone);
  desk_->start();
  dispatch_.advance(seconds(10));
  EXPECT_THAT(desk_->cards(), IsEmpty());
  desk_->monitorsChanged(oneMonitor());
  EXPECT_EQ(desk_->cards().size(), 3U);
}

TEST_F(FirstStartTest, AWidgetAddedWithoutAMonitorIsTheUsersDesktop) {
  desk_->start();
  dispatch_.runReady();
  ASSERT_TRUE(desk_->add("B", WidgetFamily::medium, {}, std::nullopt));
  const auto before = stored();
  ASSERT_EQ(before.size(), 1U);
  desk_->monitorsChanged(oneMonitor());
  dispatch_.runReady();
  EXPECT_EQ(desk_->cards().size(), 1U) << "a default set comes over it";
  EXPECT_EQ(stored(), before);
}

TEST_F(FirstStartTest, AMendedExtensionTakesTheirPlaces) {
  startBroken();
  const auto before = placed();
  extension_.setFailure(std::nullopt);
  dispatch_.advance(seconds(1));
  EXPECT_EQ(placed(), before);
  EXPECT_EQ(stored(), before) << "the default set is remembered";
  EXPECT_EQ(saidBy("1"), "A");
  EXPECT_EQ(saidBy("3"), "C");
}

TEST_F(FirstStartTest, AnExtensionWithOtherWidgetsReplacesThem) {
  startBroken();
  auto others = threeWidgets();
  std::swap(others[0], others[2]);
  extension_.setWidgets(others);
  extension_.setFailure(std::nullopt);
  (void)told();
  dispatch_.advance(seconds(1));
  const auto now = placed();
  ASSERT_EQ(now.size(), 3U);
  EXPECT_EQ(now[0].kind, "C");
  EXPECT_EQ(now[0].id, "4") << "an id is given once";
  EXPECT_EQ(stored(), now);
  EXPECT_THAT(told(), testing::IsSupersetOf({"removed 1", "removed 2", "removed 3", "added 4"}));
}

TEST_F(FirstStartTest, OneThatTheUserMovesIsRemembered) {
  startBroken();
  ASSERT_TRUE(desk_->move("2", {"DP-1", 5, 6}));
  ASSERT_TRUE(desk_->remove("1"));
  const auto before = placed();
  EXPECT_EQ(stored(), before);
  extension_.setFailure(std::nullopt);
  dispatch_.advance(seconds(1));
  EXPECT_EQ(placed(), before) << "no default set comes over it";
  EXPECT_EQ(saidBy("2"), "B");
  makeDesk();
  startAndSettle();
  EXPECT_EQ(placed(), before);
}

TEST_F(FirstStartTest, TheNextStartWithoutAChangeIsAFirstOneAgain) {
  startBroken();
  makeDesk();
  extension_.setFailure(std::nullopt);
  startAndSettle();
  EXPECT_EQ(saidBy("1"), "A");
  EXPECT_EQ(stored(), placed());
}

TEST_F(FirstStartTest, TryAgainAsksAtOnceHoweverLongTheHostWouldWait) {
  startBroken(ExtensionFailure::timedOut);
  EXPECT_THAT(askedWithin(minutes(4)), ElementsAre("list"));
  extension_.setFailure(std::nullopt);
  desk_->press("3", tryAgainIntent);
  EXPECT_EQ(extension_.tries(), 1) << "no pause after crashes either";
  EXPECT_THAT(asked(), Contains("timeline A large"));
  EXPECT_EQ(saidBy("1"), "A");
}

TEST_F(FirstStartTest, AReloadOfOneCardAsksForTheCatalogue) {
  startBroken(ExtensionFailure::timedOut);
  (void)asked();
  ASSERT_TRUE(desk_->reload("2"));
  EXPECT_TRUE(desk_->card("2")->isAwaited);
  EXPECT_THAT(asked(), ElementsAre("list"));
  EXPECT_FALSE(desk_->card("2")->isAwaited) << "nothing is on its way";
}

TEST_F(FirstStartTest, RememberedCardsSayThatNothingComes) {
  startAndSettle();
  makeDesk();
  startBroken(ExtensionFailure::timedOut);
  EXPECT_EQ(desk_->cards().size(), 3U);
  EXPECT_THAT(views(), Contains(unansweredCard(strings_, WidgetFamily::large)));
  EXPECT_EQ(saidBy("2"), "No data yet, Try again");
  EXPECT_THAT(told(), testing::IsSupersetOf({"changed 1", "changed 2", "changed 3"}));
}

TEST_F(FirstStartTest, ACardOfItsOwnThatIsNotAnsweredHasTheButtonToo) {
  startAndSettle();
  extension_.setSilent(true);
  ASSERT_TRUE(desk_->resize("1", WidgetFamily::small));
  dispatch_.runReady();
  EXPECT_EQ(desk_->card("1")->view, emptyCard(strings_));
  extension_.failAll(ExtensionFailure::timedOut);
  dispatch_.runReady();
  EXPECT_EQ(saidBy("1"), "No data yet, Try again");
  (void)extension_.takeAsked();
  extension_.setSilent(false);
  desk_->press("1", tryAgainIntent);
  EXPECT_THAT(asked(), ElementsAre("placeholder A small", "timeline A small"));
  EXPECT_EQ(saidBy("1"), "A");
}

}  // namespace
}  // namespace lanternfold
