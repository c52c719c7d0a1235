#include "HostProgram/Menu/CardMenus.h"

#include <gdkmm/window.h>
#include <utility>

#include "HostProgram/Menu/MenuWidgets.h"
#include "WidgetHost/Desk/CatalogueRules.h"

namespace lanternfold {

void CardMenus::open(const std::string& id, const GdkEvent& event) {
  const auto card = surroundings_.desk.card(id);
  if (!card) return;
  latest_ = std::make_shared<bool>(true);
  const WidgetDescription* const description =
      descriptionOf(surroundings_.desk.catalogue(), card->placed.kind);
  if (description == nullptr || !hasAdapterChoice(*description)) {
    showMenu(id, event, {});
    return;
  }
  // The options may come a second later, when the card, and another one of the same place, can be
  // gone: only its name is kept.
  surroundings_.adapters.provideAdapterOptions(
      AdapterConfigurationIntent::from(card->placed.configuration),
      [this, id, asked = std::weak_ptr(latest_),
       kept = std::shared_ptr<GdkEvent>(gdk_event_copy(&event), gdk_event_free)](
          AdapterConfigurationIntentHandling::AdapterOptions options) {
        if (asked.expired()) return;
        showMenu(id, *kept, options ? *std::move(options) : std::vector<NetworkAdapter>());
      });
}

void CardMenus::cardRemoved(const std::string& id) {
  if (!menu_ || menuOwner_ != id) return;
  menu_->popdown();
  menu_.reset();
}

void CardMenus::showMenu(const std::string& id, const GdkEvent& event,
                         std::vector<NetworkAdapter> adapters) {
  const auto card = surroundings_.desk.card(id);
  CardWindow* const window = surroundings_.window(id);
  if (!card || window == nullptr || !window->get_mapped()) return;
  CardMenuFacts facts{.placed = card->placed,
                      .adapters = std::move(adapters),
                      .wifiNames = surroundings_.wifiNames.decision(),
                      .isConsentElsewhere = surroundings_.wifiNames.isConsentElsewhere()};
  const WidgetDescription* const description =
      descriptionOf(surroundings_.desk.catalogue(), card->placed.kind);
  if (description != nullptr) facts.description = *description;
  menu_ = makeMenu(cardMenu(facts, surroundings_.strings),
                   [this, id](const CardMenuAction& action) { take(id, action); });
  menuOwner_ = id;
  popUp(*window, event);
}

/// Without its event a display may refuse the menu the keyboard and the pointer.
void CardMenus::popUp(CardWindow& window, const GdkEvent& event) {
  CardCanvas& canvas = window.canvas();
  menu_->attach_to_widget(canvas);
  // Of a window that is gone, the place is.
  const bool hasPlace = event.type == GDK_BUTTON_PRESS && event.any.window != nullptr &&
                        gdk_window_is_destroyed(event.any.window) == FALSE;
  if (hasPlace) {
    menu_->popup_at_pointer(&event);
  } else {
    menu_->popup_at_widget(&canvas, Gdk::GRAVITY_CENTER, Gdk::GRAVITY_NORTH_WEST, &event);
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
      surroundings_.remove(id);
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
