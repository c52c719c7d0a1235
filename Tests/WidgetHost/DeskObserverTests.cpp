// What an observer of a desk is told, and what it may do meanwhile.
#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/WidgetHost/DeskWorld.h"

namespace lanternfold {
namespace {

using testing::IsEmpty;

using DeskObserverTest = DeskWorld;

TEST_F(DeskObserverTest, ACardThatComesAndGoesIsNotToldOf) {
  startAndSettle();
  const auto id = desk_->add("C", {}, {}, {});
  ASSERT_TRUE(id);
  ASSERT_TRUE(desk_->remove(*id));
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(DeskObserverTest, NothingIsToldInsideOfTheCall) {
  startAndSettle();
  ASSERT_TRUE(desk_->move("1", {"DP-1", 7, 7}));
  EXPECT_THAT(observer_.takeTold(), IsEmpty());
}

TEST_F(DeskObserverTest, AnObserverMayEndTheDesk) {
  class Ending final : public WidgetDeskObserver {
   public:
    explicit Ending(std::optional<WidgetDesk>& desk) : desk_(desk) {}
    void cardAdded(const std::string&) override {}
    void cardChanged(const std::string&) override {
      ++told;
      desk_.reset();
    }
    void cardRemoved(const std::string&) override {}
    void catalogueChanged() override {}
    int told = 0;

   private:
    std::optional<WidgetDesk>& desk_;
  };
  startAndSettle();
  Ending ending(desk_);
  desk_->setObserver(&ending);
  desk_->reloadAll();
  dispatch_.advance(std::chrono::hours(1));
  EXPECT_EQ(ending.told, 1);
  EXPECT_THAT(extension_.waiting(), IsEmpty()) << "what was asked is taken back";
}

TEST_F(DeskObserverTest, AnObserverMayRemoveTheWidgetThatItIsToldOfAndAddAnother) {
  class Replacing final : public WidgetDeskObserver {
   public:
    explicit Replacing(WidgetDesk& desk) : desk_(desk) {}
    void cardAdded(const std::string& id) override { told.push_back("added " + id); }
    void cardChanged(const std::string& id) override {
      told.push_back("changed " + id);
      if (id != "1" || !desk_.card(id)) return;
      EXPECT_TRUE(desk_.reload("1"));
      EXPECT_TRUE(desk_.remove("1"));
      EXPECT_TRUE(desk_.add("C", {}, {}, {}));
      EXPECT_FALSE(desk_.reload("1"));
    }
    void cardRemoved(const std::string& id) override { told.push_back("removed " + id); }
    void catalogueChanged() override {}
    std::vector<std::string> told;

   private:
    WidgetDesk& desk_;
  };
  startAndSettle();
  Replacing replacing(*desk_);
  desk_->setObserver(&replacing);
  desk_->reloadAll();
  dispatch_.runReady();
  EXPECT_THAT(replacing.told, testing::IsSupersetOf({"changed 1", "removed 1", "added 4"}));
  EXPECT_EQ(std::ranges::count(replacing.told, "changed 1"), 1);
  EXPECT_EQ(saidBy("4"), "C");
  EXPECT_EQ(stored(), placed());
  desk_->setObserver(&observer_);
}

TEST_F(DeskObserverTest, AnswersAfterItsEndFindNobody) {
  startAndSettle();
  extension_.setSilent(true);
  desk_->reloadAll();
  desk_.reset();
  extension_.setSilent(false);
  dispatch_.advance(std::chrono::hours(1));
  EXPECT_EQ(extension_.takeAsked().size(), 3U);
}

}  // namespace
}  // namespace lanternfold
