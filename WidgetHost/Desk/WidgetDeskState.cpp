#include "WidgetHost/Desk/WidgetDeskState.h"

#include <algorithm>
#include <utility>

#include "Support/FatalError.h"
#include "WidgetHost/Store/WidgetStore.h"

namespace lanternfold {

WidgetDesk::State::State(const Surroundings& surroundings, const Options& options)
    : extension_(surroundings.extension),
      store_(surroundings.store),
      queue_(surroundings.mainQueue),
      clock_(surroundings.clock, options.dates),
      strings_(surroundings.strings),
      log_(surroundings.log),
      announcements_(surroundings.mainQueue),
      schedule_(options.refreshInterval),
      knownWidgets_(options.knownWidgets) {}

void WidgetDesk::State::start() {
  if (std::exchange(isStarted_, true)) fatalError("a desk was started twice");
  extension_.setFailedTooOftenHandler([weak = weak_from_this()] {
    if (const auto state = weak.lock()) state->leftAloneChanged();
  });
  auto remembered = store_.load();
  wantsDefaultSet_ = !remembered.has_value();
  for (PlacedWidget& widget : remembered.value_or(std::vector<PlacedWidget>{})) {
    announcements_.added(items_.emplace_back(Item{.placed = std::move(widget)}).placed.id);
  }
  standAll();
  schedule_.add(std::string(catalogueId), now());
  leftAloneChanged();
}

void WidgetDesk::State::stop() {
  announcements_.setObserver(nullptr);
  timer_.reset();
  if (!isStarted_) return;
  extension_.setFailedTooOftenHandler(nullptr);
  extension_.cancel(catalogueQuestion_);
  for (const Item& item : items_) extension_.cancel(item.question);
  if (isUnsaved_) save();
}

WidgetDesk::State::Item* WidgetDesk::State::itemOf(std::string_view id) {
  const auto found =
      std::ranges::find_if(items_, [&](const Item& item) { return item.placed.id == id; });
  return found == items_.end() ? nullptr : &*found;
}

WidgetDesk::State::Item* WidgetDesk::State::shownItem(std::string_view id) {
  Item* const item = itemOf(id);
  return item != nullptr && item->isShown ? item : nullptr;
}

Card WidgetDesk::State::cardOf(const Item& item) const {
  const CardContent::Standing standing = standingOf(item);
  return {.placed = item.placed,
          .shownAt = item.shownAt,
          .view = item.content.view(standing, strings_, item.placed.family),
          .date = item.content.date(),
          .isSample = item.content.face(standing) == CardContent::Face::sample,
          .isStale = standing.isStale,
          .isAwaited = item.isAwaited};
}

std::vector<StandingWidget> WidgetDesk::State::standingBeside(const Item* item) const {
  std::vector<StandingWidget> standing;
  for (const Item& other : items_) {
    const auto& shown = other.shownAt;
    if (&other == item || !other.isShown || !shown) continue;
    const Point origin{static_cast<double>(shown->x), static_cast<double>(shown->y)};
    standing.push_back({.monitor = shown->monitor,
                        .frame = {.origin = origin, .size = widgetSize(other.placed.family)}});
  }
  return standing;
}

void WidgetDesk::State::stand(Item& item) {
  const RememberedWidget widget{item.placed.position, widgetSize(item.placed.family)};
  item.shownAt = shownPositionBeside(standingBeside(&item), widget, monitors_);
}

void WidgetDesk::State::standAll() {
  std::vector<RememberedWidget> widgets;
  widgets.reserve(items_.size());
  for (const Item& item : items_) {
    widgets.push_back({item.placed.position, widgetSize(item.placed.family)});
  }
  const auto positions = shownPositions(widgets, monitors_);
  for (std::size_t index = 0; index < items_.size(); ++index) {
    items_[index].shownAt = positions[index];
  }
}

MonitorPosition WidgetDesk::State::freePlace(WidgetFamily family) const {
  return freePosition(widgetSize(family), standingBeside(nullptr), monitors_)
      .value_or(MonitorPosition{});
}

WidgetRequest WidgetDesk::State::requestOf(const Item& item) const {
  return {.family = item.placed.family, .configuration = item.placed.configuration, .context = {}};
}

// What changes.

std::string WidgetDesk::State::insert(PlacedWidget widget) {
  widget.id = store_.newId();
  Item& item = items_.emplace_back(Item{.placed = std::move(widget)});
  stand(item);
  announcements_.added(item.placed.id);
  if (!catalogue_.empty()) beginSchedule(item);
  return item.placed.id;
}

void WidgetDesk::State::erase(const std::string& id) {
  Item* const item = itemOf(id);
  extension_.cancel(item->question);
  schedule_.remove(id);
  items_.erase(items_.begin() + (item - items_.data()));
  announcements_.removed(id);
}

void WidgetDesk::State::save() {
  std::vector<PlacedWidget> placed;
  placed.reserve(items_.size());
  for (const Item& item : items_) placed.push_back(item.placed);
  // Whatever is saved is the user's desktop from now on.
  areStandIns_ = wantsDefaultSet_ = false;
  // Why it is not on the disk stands in the log; the desktop is as the user has made it, and is
  // saved when there may be room again.
  isUnsaved_ = !store_.save(placed);
}

void WidgetDesk::State::askAnew(Item& item, bool isAnother) {
  item.isAwaited = true;
  tellChange(item);
  // It is asked for as soon as the catalogue is known.
  schedule_.wish(item.isScheduled ? std::string_view(item.placed.id) : catalogueId, now());
  if (isAnother) extension_.cancel(item.question);
}

void WidgetDesk::State::forgetContents() {
  for (Item& item : items_) item.content.forget();
}

void WidgetDesk::State::askAllAnew(bool areOthers) {
  for (Item& item : items_) {
    if (item.isShown) askAnew(item, areOthers);
  }
  if (catalogue_.empty()) schedule_.wishAll(now());
}

void WidgetDesk::State::perform(Item& item, const std::string& intent) {
  if (std::exchange(item.isPerforming, true)) return;
  item.isAwaited = true;
  announcements_.changed(item.placed.id);
  extension_.perform(
      intent, [weak = weak_from_this(), id = item.placed.id](const std::expected<void, Failure>&) {
        const auto state = weak.lock();
        Item* const performed = state ? state->shownItem(id) : nullptr;
        if (performed == nullptr) return;
        performed->isPerforming = false;
        // Whatever has become of it: the timeline shows how things are now.
        state->askAnew(*performed, false);
        state->proceed();
      });
}

void WidgetDesk::State::letStartAgain() {
  extension_.tryAgain();
  askAllAnew(false);
  leftAloneChanged();
}

void WidgetDesk::State::tryAgain(Item& item) {
  if (faceOf(item) != CardContent::Face::unanswered) return;
  extension_.tryAgain();
  askAnew(item, false);
}

void WidgetDesk::State::setMonitors(std::vector<MonitorArea> monitors) {
  // Displays tell of them also when they are as they were.
  const bool areOthers = monitors != monitors_;
  monitors_ = std::move(monitors);
  if (areOthers) standAll();
  placeDefaultSet();
}

// Questions and answers.

void WidgetDesk::State::beginSchedule(Item& item) {
  if (std::exchange(item.isScheduled, true)) return;
  schedule_.add(item.placed.id, now());
}

template <typename Answer>
WidgetExtension::Completion<Answer> WidgetDesk::State::answerOf(
    Item& item, void (State::*receive)(Item&, std::expected<Answer, Failure>)) {
  item.turn = ++turns_;
  return [weak = weak_from_this(), id = item.placed.id, turn = item.turn,
          receive](std::expected<Answer, Failure> answer) {
    const auto state = weak.lock();
    Item* const asked = state ? state->itemOf(id) : nullptr;
    if (asked != nullptr && asked->turn == turn) (*state.*receive)(*asked, std::move(answer));
  };
}

void WidgetDesk::State::ask(Item& item) {
  if (item.content.isBare()) {
    askSample(item);
  } else {
    askTimeline(item);
  }
}

void WidgetDesk::State::askSample(Item& item) {
  item.question = extension_.sample(WidgetExtension::SampleKind::placeholder, item.placed.kind,
                                    requestOf(item), answerOf(item, &State::receiveSample));
}

void WidgetDesk::State::askTimeline(Item& item) {
  item.question = extension_.timeline(item.placed.kind, requestOf(item),
                                      answerOf(item, &State::receiveTimeline));
}

void WidgetDesk::State::receiveSample(Item& item, std::expected<ViewEntry, Failure> answer) {
  if (answer) {
    item.content.receiveSample(*std::move(answer));
    tellChange(item);
  } else if (answer.error() != Failure::refused) {
    return miss(item, answer.error());
  }
  if (!schedule_.isHeld()) return askTimeline(item);
  schedule_.putBack(item.placed.id, now());
}

void WidgetDesk::State::receiveTimeline(Item& item,
                                        std::expected<Timeline<ViewEntry>, Failure> answer) {
  if (!answer) return miss(item, answer.error());
  clock_.look();
  schedule_.answered(item.placed.id, untilEndOf(*answer, clock_.date()), now());
  item.content.receiveTimeline(std::move(*answer), clock_.date());
  item.isAwaited = false;
  tellChange(item);
  proceed();
}

void WidgetDesk::State::miss(Item& item, Failure failure) {
  schedule_.failed(item.placed.id, failure, now());
  if (failure != Failure::cancelled) awaitNoMore(item);
  tellWhenFaceHasChanged(item);
  leftAloneChanged();
}

void WidgetDesk::State::awaitNoMore(Item& item) {
  if (std::exchange(item.isAwaited, false)) announcements_.changed(item.placed.id);
}

CardContent::Standing WidgetDesk::State::standingOf(const Item& item) const {
  const std::string_view id = item.isScheduled ? std::string_view(item.placed.id) : catalogueId;
  return {.isMissed = schedule_.hasMissed(id),
          .isStale = schedule_.isStale(id),
          .isLeftAlone = isLeftAlone()};
}

CardContent::Face WidgetDesk::State::faceOf(const Item& item) const {
  return item.content.face(standingOf(item));
}

void WidgetDesk::State::tellChange(Item& item) {
  item.toldFace = faceOf(item);
  announcements_.changed(item.placed.id);
}

void WidgetDesk::State::tellWhenFaceHasChanged(Item& item) {
  if (item.isShown && item.toldFace != faceOf(item)) tellChange(item);
}

void WidgetDesk::State::leftAloneChanged() {
  schedule_.setHeld(ReloadSchedule::Hold::leftAlone, isLeftAlone());
  placeDefaultSet();
  for (Item& item : items_) tellWhenFaceHasChanged(item);
  proceed();
}

// Time.

void WidgetDesk::State::proceed() {
  if (!isStarted_) return;
  clock_.look();
  advanceEntries();
  renewTimes();
  for (const std::string& id : schedule_.takeDue(now())) {
    if (id == catalogueId) {
      askCatalogue();
    } else if (Item* const item = itemOf(id)) {
      ask(*item);
    }
  }
  setTimer();
}

void WidgetDesk::State::advanceEntries() {
  for (Item& item : items_) {
    if (item.content.advance(clock_.date())) announcements_.changed(item.placed.id);
  }
}

bool WidgetDesk::State::saysTime() const {
  return std::ranges::any_of(
      items_, [this](const Item& item) { return item.content.saysTime(standingOf(item)); });
}

/// What was made today was made yesterday from midnight on.
void WidgetDesk::State::renewTimes() {
  // The calendars of the languages are dear, and most cards say no time.
  if (!saysTime() || !clock_.takeNewDay()) return;
  for (const Item& item : items_) {
    if (item.isShown && item.content.saysTime(standingOf(item))) {
      announcements_.changed(item.placed.id);
    }
  }
}

std::optional<ReloadSchedule::TimePoint> WidgetDesk::State::nextMoment() const {
  auto next = schedule_.nextDue();
  // Nobody sees the entries of a locked session, nor those behind a quiet card.
  if (schedule_.isHeld()) return next;
  const auto orAt = [this, &next](DeskClock::Date date) {
    const auto moment = clock_.momentOf(date);
    if (!next || moment < *next) next = moment;
  };
  for (const Item& item : items_) {
    if (const auto change = item.content.nextChange()) orAt(*change);
  }
  if (saysTime()) orAt(clock_.endOfDay());
  return next;
}

void WidgetDesk::State::setTimer() {
  const auto next = nextMoment();
  if (next == timerDue_) return;
  timerDue_ = next;
  timer_.reset();
  if (!next) return;
  timer_.emplace(queue_, *next - now(), [weak = weak_from_this()] {
    if (const auto state = weak.lock()) state->wakeUp();
  });
}

void WidgetDesk::State::wakeUp() {
  timerDue_.reset();
  if (isUnsaved_) save();
  proceed();
}

}  // namespace lanternfold
