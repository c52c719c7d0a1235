// Opens the menus of cards, and does what is taken from them.
//
// Made by: `HostDesktop`, once. Main thread.
#pragma once

#include <functional>
#include <gtkmm/menu.h>
#include <memory>
#include <string>
#include <vector>

#include "HostProgram/Cards/CardWindow.h"
#include "HostProgram/Consent/WifiNames.h"
#include "HostProgram/Menu/CardMenu.h"
#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntentHandling.h"
#include "Platform/DiagnosticLog.h"
#include "WidgetHost/Desk/WidgetDesk.h"

namespace lanternfold {

class CardMenus {
 public:
  struct Surroundings {
    WidgetDesk& desk;
    AdapterConfigurationIntentHandling& adapters;
    WifiNames& wifiNames;
    const StringTable& strings;
    /// That of a card; null when it is gone.
    std::function<CardWindow*(const std::string& id)> window;
    /// Of what the user did not get, a sentence without its full stop.
    std::function<void(const std::string& sentence)> tell;
    std::function<void()> addWidget;
    std::function<void(const std::string& id)> remove;
    std::function<void()> quit;
  };

  /// Everything outlives the menus.
  explicit CardMenus(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

  /// Over the window of the card `id`: at the pointer when `event` is of a button, else in the
  /// middle.
  void open(const std::string& id, const GdkEvent& event);

  /// Its menu is shut.
  void cardRemoved(const std::string& id);

 private:
  void showMenu(const std::string& id, const GdkEvent& event, std::vector<NetworkAdapter> adapters);
  void popUp(CardWindow& window, const GdkEvent& event);
  void take(const std::string& id, const CardMenuAction& action);
  void take(const std::string& id, CardCommand command);
  void configure(const std::string& id, const CardMenuAction& action);
  void tellFailure(const std::expected<void, std::string>& result) const;

  Surroundings surroundings_;
  std::unique_ptr<Gtk::Menu> menu_;
  std::string menuOwner_;  ///< the card of `menu_`
  /// A question for adapters that is overtaken opens no menu any more.
  std::shared_ptr<bool> latest_;
};

}  // namespace lanternfold
