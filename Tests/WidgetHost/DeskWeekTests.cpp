// A week on a desktop, in virtual time and from a seed: the user, the network and the session do
// what they like, the extension and the disk fail, and the rules hold after every step.
#include <algorithm>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "Tests/WidgetHost/CapriciousExtension.h"
#include "Tests/WidgetHost/DeskMachine.h"
#include "WidgetHost/Desk/HostCards.h"

namespace lanternfold {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

std::vector<WidgetDescription> catalogue() {
  using enum WidgetFamily;
  std::vector<WidgetDescription> widgets;
  for (const char* kind : {"A", "B", "C", "D", "E!", "F", "G", "H"}) {
    widgets.push_back({.kind = kind, .supportedFamilies = {small, medium, large}});
  }
  return widgets;
}

std::vector<WidgetKind> knownWidgets() {
  std::vector<WidgetKind> kinds;
  for (const auto& widget : catalogue()) kinds.push_back({widget.kind, widget.supportedFamilies});
  return kinds;
}

/// Knows of the cards only what it is told.
class FollowingObserver final : public WidgetDeskObserver {
 public:
  void cardAdded(const std::string& id) override {
    EXPECT_TRUE(known.insert(id).second) << id << " was added twice";
  }
  void cardChanged(const std::string& id) override {
    EXPECT_TRUE(known.contains(id)) << id << " has changed and was never added";
  }
  void cardRemoved(const std::string& id) override {
    EXPECT_EQ(known.erase(id), 1U) << id << " was removed and was not there";
  }
  void catalogueChanged() override {}

  std::set<std::string> known;
};

class Week : DeskMachine {
 public:
  explicit Week(std::uint64_t seed) : DeskMachine(seed), random_(seed) {
    extension_.setWidgets(catalogue());
    files_.makeFolder("/config");
    startProgram();
  }

  ~Week() { desk_.reset(); }
  Week(const Week&) = delete;
  Week& operator=(const Week&) = delete;

  void live() {
    const auto end = clock_.steadyNow() + hours(24 * 7);
    while (clock_.steadyNow() < end && !testing::Test::HasFailure()) {
      happen();
      dispatch_.runReady();
      check();
      dispatch_.advance(seconds(drawn(600)));
      check();
    }
    if (testing::Test::HasFailure()) return;
    EXPECT_GT(extension_.questions(), 1000U) << "a week in which little happened";
    for (const auto& [happening, count] : happenings_) {
      EXPECT_GT(count, 0) << happening << " never happened";
    }
  }

 private:
  using Happening = void (Week::*)();

  void startProgram() {
    desk_.reset();
    extension_.forgetHost();
    observer_ = {};
    makeDesk(extension_, observer_, {.knownWidgets = knownWidgets()});
    desk_->setLocked(isLocked_);
    plug();
    desk_->start();
    calmSince_ = clock_.steadyNow();
  }

  void happen() {
    // Neither lasts long on most days.
    if (isLocked_ && drawn(2) == 0) return lockOrUnlock();
    if (extension_.hasFailedTooOften() && drawn(2) == 0) return pressButton();
    static const std::vector<std::pair<const char*, Happening>> all{
        {"a change of the network", &Week::changeNetwork},
        {"a change of the network again", &Week::changeNetwork},
        {"a suspension", &Week::suspend},
        {"a lock", &Week::lockOrUnlock},
        {"a new widget", &Week::addWidget},
        {"a removal", &Week::removeWidget},
        {"a new size", &Week::resizeWidget},
        {"a new configuration", &Week::configureWidget},
        {"a move", &Week::moveWidget},
        {"a reload", &Week::reloadWidget},
        {"a press", &Week::pressButton},
        {"another mood of the extension", &Week::changeMood},
        {"a crash", &Week::crash},
        {"too many crashes", &Week::failTooOften},
        {"a full disk", &Week::fillOrEmptyDisk},
        {"a monitor", &Week::plug},
        {"a new start", &Week::startAgain}};
    const auto& [name, happening] = all[drawn(all.size())];
    for (const auto& [each, ignored] : all) happenings_.try_emplace(each, 0);
    ++happenings_[name];
    (this->*happening)();
  }

  void changeNetwork() {
    for (std::size_t count = drawn(20); count > 0; --count) {
      desk_->networkPathChanged();
      dispatch_.advance(std::chrono::milliseconds(drawn(1200)));
    }
  }
  void suspend() { desk_->resumed(); }
  void lockOrUnlock() {
    isLocked_ = !isLocked_;
    if (isLocked_) desk_->setLocked(true);
    extension_.setLocked(isLocked_);
    if (!isLocked_) desk_->setLocked(false);
    calmSince_ = clock_.steadyNow();
  }
  void addWidget() {
    if (!catalogueSeen()) return;
    const std::string kind = catalogue()[drawn(8)].kind;
    if (std::ranges::any_of(desk_->cards(),
                            [&](const Card& card) { return card.placed.kind == kind; })) {
      return;
    }
    noteChange(desk_->add(kind, anyFamily(), {}, std::nullopt).has_value());
    calmSince_ = clock_.steadyNow();
  }
  void removeWidget() {
    if (const auto card = anyCard()) {
      noteChange(desk_->remove(card->placed.id).has_value());
      // Its answer, taken back, is still on the way.
      dispatch_.runReady();
      extension_.forget(card->placed.kind);
    }
  }
  void resizeWidget() {
    if (const auto card = anyCard()) {
      const WidgetFamily family = anyFamily();
      if (family == card->placed.family) return;
      noteChange(desk_->resize(card->placed.id, family).has_value());
    }
  }
  void configureWidget() {
    if (const auto card = anyCard()) {
      ConfigurationParameters chosen = card->placed.configuration;
      chosen.showTimestamp = !chosen.showTimestamp.value_or(false);
      noteChange(desk_->configure(card->placed.id, chosen).has_value());
    }
  }
  void moveWidget() {
    if (const auto card = anyCard()) {
      noteChange(desk_->move(card->placed.id, {"DP-1", ++lastX_, 3}).has_value());
    }
  }
  void reloadWidget() {
    const auto card = anyCard();
    if (card && !desk_->reload(card->placed.id)) ADD_FAILURE() << "a card cannot be reloaded";
    if (drawn(5) == 0) desk_->reloadAll();
  }
  void pressButton() {
    const auto card = anyCard();
    if (!card || isLocked_) return;
    desk_->press(card->placed.id,
                 extension_.hasFailedTooOften() ? tryAgainIntent : "RefreshAppIntent");
  }
  void changeMood() {
    switch (drawn(4)) {
      case 0:
        return extension_.setOutcomes({.timedOut = 0.3, .gone = 0.2, .refused = 0.2});
      case 1:
        return extension_.setOutcomes({.timedOut = 0.9});
      default:
        return extension_.setOutcomes({});
    }
  }
  void crash() { extension_.crash(); }
  void failTooOften() { extension_.failTooOften(); }
  void fillOrEmptyDisk() {
    if (!files_.bytes(file_)) return;  // the first set is to be on the disk
    isDiskFull_ = !isDiskFull_;
    files_.setFreeBytes(isDiskFull_ ? std::optional<std::size_t>(0) : std::nullopt);
  }
  void plug() {
    std::vector<MonitorArea> monitors;
    const std::size_t count = desk_->cards().empty() ? 1 : drawn(3);
    for (std::size_t number = 1; number <= count; ++number) {
      monitors.push_back({.name = "DP-" + std::to_string(number),
                          .size = {1920, 1080},
                          .workArea = {.origin = {}, .size = {1920, 1080}},
                          .isPrimary = number == 1});
    }
    desk_->monitorsChanged(std::move(monitors));
  }
  /// A program that is killed while the disk is full loses what it could not write, and no more.
  void startAgain() {
    startProgram();
    EXPECT_EQ(placed(), stored());
    isOnDisk_ = true;
  }

  void check() {
    checkStore();
    std::set<std::string> ids;
    const bool isCalm = !isLocked_ && !extension_.hasFailedTooOften();
    if (!isCalm) calmSince_ = clock_.steadyNow();
    for (const Card& card : desk_->cards()) {
      ids.insert(card.placed.id);
      const auto& record = extension_.record(card.placed.kind);
      // Until the catalogue is there its own misses count.
      const int misses = extension_.record(catalogueSeen() ? card.placed.kind : "").misses;
      EXPECT_EQ(card.isStale, misses == 2) << card.placed.kind << " after " << misses << " misses";
      checkFreshness(card, record);
    }
    EXPECT_EQ(observer_.known, ids);
  }
  [[nodiscard]] bool catalogueSeen() const { return !desk_->catalogue().empty(); }
  void checkFreshness(const Card& card, const CapriciousExtension::Record& record) {
    const auto now = clock_.steadyNow();
    // An interval, a time-out of the sample, another one of the timeline.
    const auto longest = minutes(5) + seconds(70) + seconds(200);
    if (!catalogueSeen() || card.placed.kind.ends_with('!') || now - calmSince_ < longest) return;
    EXPECT_LT(now - record.lastAsked, longest) << card.placed.kind << " was forgotten";
  }
  void checkStore() {
    // Cards that stand in for those of an extension that says nothing are not remembered.
    if (!isOnDisk_ || !files_.bytes(file_)) return;
    EXPECT_EQ(stored(), placed());
  }

  /// What is on the disk now is the desktop, unless the disk is full.
  void noteChange(bool isDone) {
    EXPECT_TRUE(isDone);
    isOnDisk_ = !isDiskFull_;
  }

  std::size_t drawn(std::size_t bound) { return random_() % bound; }
  WidgetFamily anyFamily() { return static_cast<WidgetFamily>(drawn(3)); }
  std::optional<Card> anyCard() {
    const auto cards = desk_->cards();
    if (cards.empty() || !catalogueSeen()) return std::nullopt;
    return cards[drawn(cards.size())];
  }

  std::mt19937_64 random_;
  CapriciousExtension extension_{dispatch_.mainQueue(), clock_, random_};
  FollowingObserver observer_;
  std::map<std::string, int> happenings_;
  bool isLocked_ = false;
  bool isDiskFull_ = false;
  bool isOnDisk_ = true;
  int lastX_ = 0;
  /// Since when it could ask.
  std::chrono::steady_clock::time_point calmSince_;
};

class DeskWeek : public testing::TestWithParam<std::uint64_t> {};

TEST_P(DeskWeek, TheRulesHoldAfterEveryStep) { Week(GetParam()).live(); }

INSTANTIATE_TEST_SUITE_P(Seeds, DeskWeek, testing::Range<std::uint64_t>(1, 21));

}  // namespace
}  // namespace lanternfold
