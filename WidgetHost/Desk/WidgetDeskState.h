// The desk's inside: its widgets, the questions on their way, and the one timer.
//
// Made by: `WidgetDesk`. Main queue.
#pragma once

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Timer.h"
#include "WidgetHost/Desk/CardContent.h"
#include "WidgetHost/Desk/DeskAnnouncements.h"
#include "WidgetHost/Desk/DeskClock.h"
#include "WidgetHost/Desk/WidgetDesk.h"
#include "WidgetHost/Schedule/ReloadSchedule.h"

namespace lanternfold {

/// Shared, so that answers that come after the desk's end find nobody.
class WidgetDesk::State : public std::enable_shared_from_this<State> {
 public:
  /// A widget that is remembered.
  struct Item {
    PlacedWidget placed;
    std::optional<MonitorPosition> shownAt;  ///< as of `Card`
    CardContent content;
    /// Whether it is a card. One whose kind the extension does not have is only remembered.
    bool isShown = true;
    /// Whether the schedule knows it, as it does once the catalogue has been seen.
    bool isScheduled = false;
    bool isAwaited = false;
    bool isPerforming = false;
    CardContent::Face toldFace = CardContent::Face::empty;  ///< that it was told of with last
    WidgetExtension::Question question = 0;
    /// Tells an answer to the question of now from one to an earlier one.
    std::uint64_t turn = 0;
  };

  State(const Surroundings& surroundings, const Options& options);

  void start();
  /// Nothing is asked or told any more.
  void stop();

  [[nodiscard]] DeskAnnouncements& announcements() { return announcements_; }
  [[nodiscard]] const std::vector<WidgetDescription>& catalogue() const { return catalogue_; }
  [[nodiscard]] bool wantsDefaultSet() const { return wantsDefaultSet_; }
  [[nodiscard]] const std::vector<Item>& items() const { return items_; }
  /// Null when there is no such card.
  [[nodiscard]] Item* shownItem(std::string_view id);
  [[nodiscard]] Card cardOf(const Item& item) const;

  /// Where there is room for a new widget; at no certain monitor's corner while there is none.
  [[nodiscard]] MonitorPosition freePlace(WidgetFamily family) const;
  /// Gives it an id, which is returned; it is not saved yet. Nor is it when it is erased.
  std::string insert(PlacedWidget widget);
  void erase(const std::string& id);
  /// It is remembered at another place, or in another size.
  void stand(Item& item);
  void save();
  /// Somebody wants `item` anew. What is asked for it is of no use when `isAnother`.
  void askAnew(Item& item, bool isAnother);
  void askAllAnew(bool areOthers);
  void forgetContents();
  void perform(Item& item, const std::string& intent);
  void letStartAgain();
  /// The button of a card without an answer; of no effect on others.
  void tryAgain(Item& item);
  /// Asks whatever is due, and sets the timer for what is due later.
  void proceed();

  [[nodiscard]] ReloadSchedule& schedule() { return schedule_; }
  [[nodiscard]] ReloadSchedule::TimePoint now() const { return clock_.now(); }
  [[nodiscard]] bool isLeftAlone() const { return extension_.hasFailedTooOften(); }

  void setMonitors(std::vector<MonitorArea> monitors);

 private:
  using Failure = ExtensionFailure;

  /// In the schedule, where widgets stand by their ids, which are never empty.
  static constexpr std::string_view catalogueId{};

  void askCatalogue();
  void receiveCatalogue(std::expected<std::vector<WidgetDescription>, Failure> answer);
  void missCatalogue(Failure failure);
  void takeCatalogue(std::vector<WidgetDescription> catalogue);
  void showWhatIsOffered();
  void tellNotOffered(const PlacedWidget& widget);
  void placeDefaultSet();
  void place(const std::vector<WidgetKind>& widgets);
  void removeStandIns();

  void ask(Item& item);
  void askSample(Item& item);
  void askTimeline(Item& item);
  void receiveSample(Item& item, std::expected<ViewEntry, Failure> answer);
  void receiveTimeline(Item& item, std::expected<Timeline<ViewEntry>, Failure> answer);
  void miss(Item& item, Failure failure);
  /// `receive` hears of the answer when the question is still the item's.
  template <typename Answer>
  WidgetExtension::Completion<Answer> answerOf(
      Item& item, void (State::*receive)(Item&, std::expected<Answer, Failure>));

  void beginSchedule(Item& item);
  void leftAloneChanged();
  [[nodiscard]] CardContent::Standing standingOf(const Item& item) const;
  [[nodiscard]] CardContent::Face faceOf(const Item& item) const;
  void tellChange(Item& item);
  void tellWhenFaceHasChanged(Item& item);
  void awaitNoMore(Item& item);
  void advanceEntries();
  void renewTimes();
  [[nodiscard]] bool saysTime() const;
  void wakeUp();
  [[nodiscard]] std::optional<ReloadSchedule::TimePoint> nextMoment() const;
  void setTimer();

  [[nodiscard]] Item* itemOf(std::string_view id);
  [[nodiscard]] std::vector<StandingWidget> standingBeside(const Item* item) const;
  void standAll();
  [[nodiscard]] WidgetRequest requestOf(const Item& item) const;

  WidgetExtension& extension_;
  WidgetStore& store_;
  DispatchQueue& queue_;
  DeskClock clock_;
  const StringTable& strings_;
  DiagnosticLog& log_;
  DeskAnnouncements announcements_;
  ReloadSchedule schedule_;
  std::vector<Item> items_;  ///< in the store's order
  std::vector<WidgetDescription> catalogue_;
  std::vector<WidgetKind> knownWidgets_;
  std::vector<MonitorArea> monitors_;
  WidgetExtension::Question catalogueQuestion_ = 0;
  std::uint64_t turns_ = 0;
  bool isStarted_ = false;
  bool wantsDefaultSet_ = false;
  /// The cards are those of `knownWidgets_`, and nobody has changed one of them.
  bool areStandIns_ = false;
  bool isUnsaved_ = false;  ///< the last save has failed
  std::optional<Timer> timer_;
  std::optional<ReloadSchedule::TimePoint> timerDue_;
};

}  // namespace lanternfold
