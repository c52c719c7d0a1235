#include "WidgetHost/Desk/WidgetDeskState.h"

#include <algorithm>
#include <utility>

#include "Support/FatalError.h"
#include "WidgetHost/Desk/CatalogueRules.h"
#include "WidgetHost/Store/WidgetStore.h"

namespace lanternfold {
namespace {

/// In the schedule, where widgets stand by their ids, which are never empty.
constexpr std::string_view catalogueId;

}  // namespace

WidgetDesk::State::State(const Surroundings& surroundings, const Options& options)
    : extension_(surroundings.extension),
      store_(surroundings.store),
      queue_(surroundings.mainQueue),
      clock_(surroundings.clock),
      strings_(surroundings.strings),
      announcements_(surroundings.mainQueue),
      schedule_(options.refreshInterval) {}

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
  const CardContent::Standing standing{.isStale = isStale(item), .isLeftAlone = isLeftAlone()};
  return {.placed = item.placed,
          .view = item.content.view(standing, strings_, item.placed.family),
          .date = item.content.date(),
          .isSample = item.content.isSample(standing),
          .isStale = standing.isStale,
          .isAwaited = item.isAwaited};
}

std::vector<StandingWidget> WidgetDesk::State::standing() const {
  std::vector<StandingWidget> standing;
  for (const Item& item : items_) {
    const Size size = widgetSize(item.placed.family);
    const auto shown = shownPosition(item.placed.position, size, monitors_);
    if (!item.isShown || !shown) continue;
    const Point origin{static_cast<double>(shown->x), static_cast<double>(shown->y)};
    standing.push_back({.monitor = shown->monitor, .frame = {.origin = origin, .size = size}});
  }
  return standing;
}

MonitorPosition WidgetDesk::State::freePlace(WidgetFamily family) const {
  return freePosition(widgetSize(family), standing(), monitors_).value_or(MonitorPosition{});
}

WidgetRequest WidgetDesk::State::requestOf(const Item& item) const {
  return {.family = item.placed.family, .configuration = item.placed.configuration, .context = {}};
}

// What changes.

std::string WidgetDesk::State::insert(PlacedWidget widget) {
  widget.id = store_.newId();
  Item& item = items_.emplace_back(Item{.placed = std::move(widget)});
  announcements_.added(item.placed.id);
  beginSchedule(item);
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
  // Why it is not on the disk stands in the log; the desktop is as the user has made it.
  (void)store_.save(placed);
}

void WidgetDesk::State::askAnew(Item& item, bool isAnother) {
  item.isAwaited = true;
  announcements_.changed(item.placed.id);
  if (!item.isScheduled) return;  // it is asked for as soon as the catalogue is known
  schedule_.wish(item.placed.id, now());
  if (isAnother) extension_.cancel(item.question);
}

void WidgetDesk::State::askAllAnew() {
  for (Item& item : items_) {
    if (item.isShown) askAnew(item, false);
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
  askAllAnew();
  leftAloneChanged();
}

void WidgetDesk::State::setMonitors(std::vector<MonitorArea> monitors) {
  monitors_ = std::move(monitors);
  placeDefaultSet();
}

// The catalogue.

void WidgetDesk::State::askCatalogue() {
  catalogueQuestion_ = extension_.list([weak = weak_from_this()](auto answer) {
    if (const auto state = weak.lock()) state->receiveCatalogue(std::move(answer));
  });
}

void WidgetDesk::State::receiveCatalogue(
    std::expected<std::vector<WidgetDescription>, Failure> answer) {
  if (!answer) {
    schedule_.failed(catalogueId, answer.error(), now());
    for (Item& item : items_) tellWhenStaleHasChanged(item);
    return leftAloneChanged();
  }
  schedule_.remove(catalogueId);
  catalogue_ = std::move(*answer);
  std::erase_if(catalogue_, [](const auto& widget) { return widget.supportedFamilies.empty(); });
  announcements_.catalogueChanged();
  showWhatIsOffered();
  placeDefaultSet();
  proceed();
}

void WidgetDesk::State::showWhatIsOffered() {
  for (Item& item : items_) {
    item.isShown = isOffered(catalogue_, item.placed);
    if (item.isShown) {
      beginSchedule(item);
      tellWhenStaleHasChanged(item);
    } else {
      announcements_.removed(item.placed.id);
    }
  }
}

void WidgetDesk::State::placeDefaultSet() {
  if (!wantsDefaultSet_ || catalogue_.empty() || monitors_.empty()) return;
  wantsDefaultSet_ = false;
  for (const WidgetDescription& widget : catalogue_) {
    const WidgetFamily family = widget.supportedFamilies.back();
    insert({.id = {},
            .kind = widget.kind,
            .family = family,
            .configuration = {},
            .position = freePlace(family)});
  }
  save();
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
    announcements_.changed(item.placed.id);
  } else if (answer.error() != Failure::refused) {
    return miss(item, answer.error());
  }
  if (!schedule_.isHeld()) return askTimeline(item);
  schedule_.putBack(item.placed.id, now());
}

void WidgetDesk::State::receiveTimeline(Item& item,
                                        std::expected<Timeline<ViewEntry>, Failure> answer) {
  if (!answer) return miss(item, answer.error());
  schedule_.answered(item.placed.id, untilEndOf(*answer, clock_.now()), now());
  item.content.receiveTimeline(std::move(*answer), {.date = clock_.now(), .time = now()});
  item.isAwaited = false;
  tellWhenStaleHasChanged(item);
  announcements_.changed(item.placed.id);
  proceed();
}

void WidgetDesk::State::miss(Item& item, Failure failure) {
  schedule_.failed(item.placed.id, failure, now());
  if (failure != Failure::cancelled && std::exchange(item.isAwaited, false)) {
    announcements_.changed(item.placed.id);
  }
  tellWhenStaleHasChanged(item);
  leftAloneChanged();
}

bool WidgetDesk::State::isStale(const Item& item) const {
  return schedule_.isStale(item.isScheduled ? item.placed.id : catalogueId);
}

void WidgetDesk::State::tellWhenStaleHasChanged(Item& item) {
  const bool isNow = isStale(item);
  if (std::exchange(item.wasStale, isNow) != isNow) announcements_.changed(item.placed.id);
}

void WidgetDesk::State::leftAloneChanged() {
  schedule_.setHeld(ReloadSchedule::Hold::leftAlone, isLeftAlone());
  if (std::exchange(wasLeftAlone_, isLeftAlone()) != isLeftAlone()) {
    for (const Item& item : items_) {
      if (item.isShown) announcements_.changed(item.placed.id);
    }
  }
  proceed();
}

// Time.

void WidgetDesk::State::proceed() {
  if (!isStarted_) return;
  advanceEntries();
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
    if (item.content.advance(now())) announcements_.changed(item.placed.id);
  }
}

std::optional<ReloadSchedule::TimePoint> WidgetDesk::State::nextMoment() const {
  auto next = schedule_.nextDue();
  // Nobody sees the entries of a locked session, nor those behind a quiet card.
  if (schedule_.isHeld()) return next;
  for (const Item& item : items_) {
    const auto change = item.content.nextChange();
    if (change && (!next || *change < *next)) next = change;
  }
  return next;
}

void WidgetDesk::State::setTimer() {
  const auto next = nextMoment();
  if (next == timerDue_) return;
  timerDue_ = next;
  timer_.reset();
  if (!next) return;
  timer_.emplace(queue_, *next - now(), [weak = weak_from_this()] {
    const auto state = weak.lock();
    if (!state) return;
    state->timerDue_.reset();
    state->proceed();
  });
}

}  // namespace lanternfold
