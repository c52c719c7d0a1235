#include "HostProgram/Cards/DesktopWindows.h"

#include <algorithm>
#include <utility>

#include "WidgetHost/Desk/CatalogueRules.h"

namespace lanternfold {
namespace {

/// Enough to find a widget among many windows, and to begin to do something with it.
constexpr unsigned raisedSeconds = 10;

Point pointOf(const MonitorPosition& position) {
  return {static_cast<double>(position.x), static_cast<double>(position.y)};
}

}  // namespace

DesktopWindows::DesktopWindows(const Surroundings& surroundings, Handlers handlers)
    : surroundings_(surroundings),
      handlers_(std::move(handlers)),
      monitorWatch_(
          std::make_unique<MonitorWatch>(surroundings.clock, [this] { countMonitors(); })) {
  surroundings_.desk.setObserver(this);
  countMonitors();
}

DesktopWindows::~DesktopWindows() {
  lowering_.disconnect();
  surroundings_.desk.setObserver(nullptr);
}

void DesktopWindows::countMonitors() {
  monitors_ =
      surroundings_.placer.roomOn(currentMonitors(), [this] { monitorWatch_->countAgain(); });
  areas_.clear();
  for (const PlacedMonitor& monitor : monitors_) areas_.push_back(monitor.area);
  surroundings_.desk.monitorsChanged(areas_);
  placeAll();
}

void DesktopWindows::placeAll() {
  for (auto& [id, window] : windows_) {
    if (const auto card = surroundings_.desk.card(id)) place(window, *card);
  }
}

void DesktopWindows::reveal() {
  isRevealed_ = true;
  placeAll();
}

void DesktopWindows::setScheme(ColourScheme scheme) {
  surroundings_.drawing.scheme = scheme;
  for (auto& [id, window] : windows_) window.canvas().refresh();
}

void DesktopWindows::cardAdded(const std::string& id) {
  const auto card = surroundings_.desk.card(id);
  if (!card || windows_.contains(id)) return;
  const auto [added, isNew] =
      windows_.try_emplace(id, surroundings_.drawing, surroundings_.placer, handlersOf(id));
  added->second.signal_map_event().connect([this](GdkEventAny*) {
    handlers_.shown();
    return false;
  });
  show(added->second, *card);
  handlers_.cardAdded();
}

void DesktopWindows::cardChanged(const std::string& id) {
  const auto found = windows_.find(id);
  const auto card = surroundings_.desk.card(id);
  if (found != windows_.end() && card) show(found->second, *card);
}

void DesktopWindows::cardRemoved(const std::string& id) {
  handlers_.cardRemoved(id);
  windows_.erase(id);
}

CardWindow* DesktopWindows::window(const std::string& id) {
  const auto found = windows_.find(id);
  return found == windows_.end() ? nullptr : &found->second;
}

void DesktopWindows::catalogueChanged() { handlers_.catalogueChanged(); }

void DesktopWindows::show(CardWindow& window, const Card& card) {
  window.showCard(displayNameOf(surroundings_.desk.catalogue(), card.placed.kind), card.view,
                  {.size = widgetSize(card.placed.family),
                   .time = card.date.value_or(surroundings_.clock.now()),
                   .isContentInvalidated = card.isAwaited});
  place(window, card);
}

void DesktopWindows::place(CardWindow& window, const Card& card) {
  if (!isRevealed_) return;
  const auto& position = card.shownAt;
  const auto monitor = std::ranges::find_if(monitors_, [&position](const PlacedMonitor& one) {
    return position && one.area.name == position->monitor;
  });
  if (monitor == monitors_.end()) {
    window.hide();
  } else {
    window.placeAt(*monitor, pointOf(*position));
  }
}

CardWindow::Handlers DesktopWindows::handlersOf(const std::string& id) {
  return {.press = [this, id](const std::string& intent) { surroundings_.desk.press(id, intent); },
          .openLink = handlers_.openLink,
          .openMenu = [this, id](const GdkEvent& event) { handlers_.openMenu(id, event); },
          .landing = [this, id](const CardDrag& drag) { return landing(id, drag); },
          .moved = [this, id](const MonitorPosition& position) { move(id, position); },
          .movedElsewhere = [this, id](const Rect& frame) { keepPlace(id, frame); },
          .stepped = [this, id](int right, int down) { step(id, right, down); },
          .removalAsked = [this, id] { handlers_.removalAsked(id); },
          .nextCard = [this, id](bool isForward) { focusNextTo(id, isForward); },
          .leave = [this] { lowerAll(); }};
}

std::vector<StandingWidget> DesktopWindows::standingBeside(const std::string& id) const {
  std::vector<StandingWidget> standing;
  for (const Card& card : surroundings_.desk.cards()) {
    const auto& position = card.shownAt;
    if (card.placed.id == id || !position) continue;
    standing.push_back({.monitor = position->monitor,
                        .frame = {pointOf(*position), widgetSize(card.placed.family)}});
  }
  return standing;
}

std::optional<CardWindow::Landing> DesktopWindows::landing(const std::string& id,
                                                           const CardDrag& drag) const {
  const auto position = drag.landing(standingBeside(id), monitors_);
  if (!position) return std::nullopt;
  const auto isThere = [&position](const PlacedMonitor& one) {
    return one.area.name == position->monitor;
  };
  return CardWindow::Landing{.monitor = *std::ranges::find_if(monitors_, isThere),
                             .position = *position};
}

void DesktopWindows::move(const std::string& id, const MonitorPosition& position) {
  const auto moved = surroundings_.desk.move(id, position);
  if (!moved) surroundings_.log.line(moved.error());
}

/// Back to where it was when it cannot be there, or is there already as far as the desk knows.
void DesktopWindows::keepPlace(const std::string& id, const Rect& frame) {
  if (const auto position = standingPosition(frame, monitors_)) move(id, *position);
  CardWindow* const moved = window(id);
  const auto card = surroundings_.desk.card(id);
  if (moved != nullptr && card) place(*moved, *card);
}

/// A card that stays where it is keeps its place.
void DesktopWindows::step(const std::string& id, int right, int down) {
  if (!surroundings_.placer.choosesPlaces()) return;
  const auto card = surroundings_.desk.card(id);
  const auto position = card ? card->shownAt : std::nullopt;
  if (!position) return;
  const auto area = std::ranges::find(areas_, position->monitor, &MonitorArea::name);
  const Size size = widgetSize(card->placed.family);
  move(id, steppedPosition(*position, size, right, down, *area));
}

/// In the order in which they were added, which their names do not tell: "10" is before "2".
std::vector<std::string> DesktopWindows::shownCards() {
  std::vector<std::string> shown;
  for (const Card& card : surroundings_.desk.cards()) {
    const CardWindow* const one = window(card.placed.id);
    if (one != nullptr && one->get_visible()) shown.push_back(card.placed.id);
  }
  return shown;
}

void DesktopWindows::focusNextTo(const std::string& id, bool isForward) {
  const std::vector<std::string> shown = shownCards();
  const auto here = std::ranges::find(shown, id);
  if (here == shown.end()) return;
  const auto index = static_cast<std::size_t>(here - shown.begin());
  const std::size_t next = (index + (isForward ? 1 : shown.size() - 1)) % shown.size();
  window(id)->raiseCard();
  window(shown.at(next))->raiseCardWithFocus();
  lowerLater();
}

void DesktopWindows::raiseAll() {
  const std::vector<std::string> shown = shownCards();
  if (shown.empty()) return;
  for (const std::string& id : shown) window(id)->raiseCard();
  window(shown.front())->raiseCardWithFocus();
  lowerLater();
}

/// Counted anew whenever the user goes on to another card.
void DesktopWindows::lowerLater() {
  lowering_.disconnect();
  lowering_ = Glib::signal_timeout().connect_seconds(
      [this] {
        lowerAll();
        return false;
      },
      raisedSeconds);
}

void DesktopWindows::lowerAll() {
  lowering_.disconnect();
  for (auto& [id, window] : windows_) window.lowerCard();
}

}  // namespace lanternfold
