#include "WidgetHost/Desk/WidgetDesk.h"

#include <utility>

#include "WidgetHost/Desk/CatalogueRules.h"
#include "WidgetHost/Desk/HostCards.h"
#include "WidgetHost/Desk/WidgetDeskState.h"
#include "WidgetHost/Store/WidgetStoreText.h"
#include "WidgetService/QuotedText.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {
namespace {

std::unexpected<std::string> noSuchWidget(std::string_view id) {
  return std::unexpected("No widget on the desktop has the id " + quotedText(id) +
                         "; \"lanternfold-widgets ctl list\" shows those that there are");
}

}  // namespace

WidgetDesk::WidgetDesk(const Surroundings& surroundings, const Options& options)
    : state_(std::make_shared<State>(surroundings, options)) {}

WidgetDesk::~WidgetDesk() { state_->stop(); }

void WidgetDesk::setObserver(WidgetDeskObserver* observer) {
  state_->announcements().setObserver(observer);
}

void WidgetDesk::start() { state_->start(); }

std::vector<Card> WidgetDesk::cards() const {
  std::vector<Card> cards;
  for (const State::Item& item : state_->items()) {
    if (item.isShown) cards.push_back(state_->cardOf(item));
  }
  return cards;
}

std::optional<Card> WidgetDesk::card(std::string_view id) const {
  const State::Item* const item = state_->shownItem(id);
  return item == nullptr ? std::nullopt : std::optional(state_->cardOf(*item));
}

const std::vector<WidgetDescription>& WidgetDesk::catalogue() const { return state_->catalogue(); }

bool WidgetDesk::awaitsDefaultSet() const { return state_->wantsDefaultSet(); }

std::expected<std::string, std::string> WidgetDesk::add(const std::string& kind,
                                                        std::optional<WidgetFamily> family,
                                                        ConfigurationParameters configuration,
                                                        std::optional<MonitorPosition> position) {
  const auto chosen = familyFor(state_->catalogue(), kind, family);
  if (!chosen) return std::unexpected(chosen.error());
  if (const auto checked = checkConfiguration(configuration); !checked) {
    return std::unexpected(checked.error());
  }
  if (state_->items().size() >= mostPlacedWidgets) {
    return std::unexpected("The desktop has " + std::to_string(mostPlacedWidgets) +
                           " widgets already, and no more fit; remove one first");
  }
  std::string id = state_->insert(
      {.id = {},
       .kind = kind,
       .family = *chosen,
       .configuration = std::move(configuration),
       .position = position ? boundedPosition(*std::move(position)) : state_->freePlace(*chosen)});
  state_->save();
  state_->proceed();
  return id;
}

std::expected<void, std::string> WidgetDesk::remove(std::string_view id) {
  if (state_->shownItem(id) == nullptr) return noSuchWidget(id);
  state_->erase(std::string(id));
  state_->save();
  state_->proceed();
  return {};
}

std::expected<void, std::string> WidgetDesk::resize(std::string_view id, WidgetFamily family) {
  State::Item* const item = state_->shownItem(id);
  if (item == nullptr) return noSuchWidget(id);
  const auto chosen = familyFor(state_->catalogue(), item->placed.kind, family);
  if (!chosen) return std::unexpected(chosen.error());
  if (item->placed.family == family) return {};
  item->placed.family = family;
  state_->stand(*item);
  item->content.forget();
  state_->save();
  state_->askAnew(*item, true);
  state_->proceed();
  return {};
}

std::expected<void, std::string> WidgetDesk::configure(std::string_view id,
                                                       ConfigurationParameters configuration) {
  State::Item* const item = state_->shownItem(id);
  if (item == nullptr) return noSuchWidget(id);
  if (auto checked = checkConfiguration(configuration); !checked) return checked;
  if (item->placed.configuration == configuration) return {};
  item->placed.configuration = std::move(configuration);
  state_->save();
  state_->askAnew(*item, true);
  state_->proceed();
  return {};
}

std::expected<void, std::string> WidgetDesk::move(std::string_view id,
                                                  const MonitorPosition& position) {
  State::Item* const item = state_->shownItem(id);
  if (item == nullptr) return noSuchWidget(id);
  MonitorPosition bounded = boundedPosition(position);
  if (item->placed.position == bounded) return {};
  item->placed.position = std::move(bounded);
  state_->stand(*item);
  state_->save();
  state_->announcements().changed(item->placed.id);
  return {};
}

std::expected<void, std::string> WidgetDesk::reload(std::string_view id) {
  State::Item* const item = state_->shownItem(id);
  if (item == nullptr) return noSuchWidget(id);
  if (state_->isLeftAlone()) {
    state_->letStartAgain();
  } else {
    state_->askAnew(*item, false);
  }
  state_->proceed();
  return {};
}

void WidgetDesk::reloadAll() {
  if (state_->isLeftAlone()) {
    state_->letStartAgain();
  } else {
    state_->askAllAnew(false);
  }
  state_->proceed();
}

void WidgetDesk::forgetAll() {
  state_->forgetContents();
  if (state_->isLeftAlone()) {
    state_->letStartAgain();
  } else {
    state_->askAllAnew(true);
  }
  state_->proceed();
}

void WidgetDesk::press(std::string_view id, const std::string& intent) {
  State::Item* const item = state_->shownItem(id);
  if (item == nullptr) return;
  if (state_->isLeftAlone()) {
    // No other button stands on a card now.
    if (intent == tryAgainIntent) state_->letStartAgain();
  } else if (intent == tryAgainIntent) {
    state_->tryAgain(*item);
  } else if (intent.size() <= longestIntentText) {
    state_->perform(*item, intent);
  }
  state_->proceed();
}

void WidgetDesk::monitorsChanged(std::vector<MonitorArea> monitors) {
  state_->setMonitors(std::move(monitors));
  state_->proceed();
}

void WidgetDesk::networkPathChanged() {
  state_->schedule().pathChanged(state_->now());
  state_->proceed();
}

void WidgetDesk::resumed() {
  state_->schedule().resumed(state_->now());
  state_->proceed();
}

void WidgetDesk::setLocked(bool isLocked) {
  state_->schedule().setHeld(ReloadSchedule::Hold::locked, isLocked);
  state_->proceed();
}

}  // namespace lanternfold
