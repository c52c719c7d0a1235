#include "HostProgram/Menu/CardMenus.h"

#include <algorithm>
#include <gdkmm/window.h>
#include <utility>

#include "HostProgram/Menu/MenuWidgets.h"

namespace lanternfold {

/// Where a menu is to open; what it was asked for with is kept, since the options of adapters come
/// later.
struct CardMenus::Place {
  Place(CardWindow& card, const GdkEvent* asked)
      : window(card.canvas()), event(asked == nullptr ? nullptr : gdk_event_copy(asked)) {}
  ~Place() {
    if (event != nullptr) gdk_event_free(event);
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  Gtk::Widget& window;
  GdkEvent* event;
};

void CardMenus::open(const std::string& id, CardWindow& window, const GdkEvent* event) {
  const auto card = surroundings_.desk.card(id);
  if (!card) return;
  const auto place = std::make_shared<Place>(window, event);
  latest_ = std::make_shared<bool>(true);
  const auto& catalogue = surroundings_.desk.catalogue();
  const auto description =
      std::ranges::find(catalogue, card->placed.kind, &WidgetDescription::kind);
  if (description == catalogue.end() || !hasAdapterChoice(*description)) {
    showMenu(id, *place, {});
    return;
  }
  surroundings_.adapters.provideAdapterOptions(
      AdapterConfigurationIntent::from(card->placed.configuration),
      [this, id, place,
       asked = std::weak_ptr(latest_)](AdapterConfigurationIntentHandling::AdapterOptions options) {
        if (asked.expired()) return;
        showMenu(id, *place, options ? *std::move(options) : std::vector<NetworkAdapter>());
      });
}

void CardMenus::showMenu(const std::string& id, const Place& place,
                         std::vector<NetworkAdapter> adapters) {
  const auto card = surroundings_.desk.card(id);
  const auto& catalogue = surroundings_.desk.catalogue();
  if (!card) return;
  CardMenuFacts facts{.placed = card->placed,
                      .adapters = std::move(adapters),
                      .wifiNames = surroundings_.wifiNames.decision(),
                      .isConsentElsewhere = surroundings_.wifiNames.isConsentElsewhere()};
  const auto description =
      std::ranges::find(catalogue, facts.placed.kind, &WidgetDescription::kind);
  if (description != catalogue.end()) facts.description = *description;
  menu_ = makeMenu(cardMenu(facts, surroundings_.strings),
                   [this, id](const CardMenuAction& action) { take(id, action); });
  menu_->attach_to_widget(place.window);
  if (place.event != nullptr) {
    menu_->popup_at_pointer(place.event);
  } else {
    menu_->popup_at_widget(&place.window, Gdk::GRAVITY_CENTER, Gdk::GRAVITY_NORTH_WEST, nullptr);
  }
}

void CardMenus::take(const std::string& id, const CardMenuAction& action) {
  WidgetDesk& desk = surroundings_.desk;
  if (const auto* command = std::get_if<CardCommand>(&action)) {
    take(id, *command);
  } else if (const auto* family = std::get_if<ChooseFamily>(&action)) {
    tellFailure(desk.resize(id, family->family));
  } else if (const auto* wifi = std::get_if<DecideWifiNames>(&action)) {
    surroundings_.wifiNames.decide(wifi->decision,
                                   [this](const auto& decided) { tellFailure(decided); });
  } else {
    configure(id, action);
  }
}

void CardMenus::configure(const std::string& id, const CardMenuAction& action) {
  const auto card = surroundings_.desk.card(id);
  if (!card) return;
  ConfigurationParameters configuration = card->placed.configuration;
  if (const auto* adapter = std::get_if<ChooseAdapter>(&action)) {
    configuration.adapter = adapter->adapter;
  } else if (const auto* time = std::get_if<ShowTime>(&action)) {
    configuration.showTimestamp = time->isShown;
  }
  tellFailure(surroundings_.desk.configure(id, std::move(configuration)));
}

void CardMenus::take(const std::string& id, CardCommand command) {
  switch (command) {
    case CardCommand::refresh:
      tellFailure(surroundings_.desk.reload(id));
      break;
    case CardCommand::addWidget:
      surroundings_.addWidget();
      break;
    case CardCommand::remove:
      tellFailure(surroundings_.desk.remove(id));
      break;
    case CardCommand::quit:
      surroundings_.quit();
      break;
  }
}

void CardMenus::tellFailure(const std::expected<void, std::string>& result) const {
  if (!result) surroundings_.tell(result.error());
}

}  // namespace lanternfold
