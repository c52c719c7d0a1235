// What the menu of a card offers, as a value.
//
// Pure. Made by: `CardMenus`, each time that a menu is opened.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "NetworkWidgetVexExtension/Intents/NetworkAdapter.h"
#include "Platform/StringTable.h"
#include "PlatformLinux/Location/ConsentText.h"
#include "WidgetHost/Store/PlacedWidget.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct ChooseFamily {
  WidgetFamily family = WidgetFamily::small;
  friend bool operator==(const ChooseFamily&, const ChooseFamily&) = default;
};

/// None leaves the choice to the widget.
struct ChooseAdapter {
  std::optional<AdapterParameter> adapter;
  friend bool operator==(const ChooseAdapter&, const ChooseAdapter&) = default;
};

struct ShowTime {
  bool isShown = false;
  friend bool operator==(const ShowTime&, const ShowTime&) = default;
};

struct DecideWifiNames {
  ConsentDecision decision = ConsentDecision::notDetermined;
  friend bool operator==(const DecideWifiNames&, const DecideWifiNames&) = default;
};

enum class CardCommand { refresh, addWidget, remove, quit };

using CardMenuAction =
    std::variant<CardCommand, ChooseFamily, ChooseAdapter, ShowTime, DecideWifiNames>;

struct CardMenuEntry {
  enum class Kind {
    command,
    choice,  ///< one of those that stand together
    check,
    submenu,
    separator,
  };

  Kind kind = Kind::command;
  std::string label;      ///< plain, never markup
  bool isChosen = false;  ///< of a choice or a check
  CardMenuAction action;  ///< when it is taken; means nothing of submenus and separators
  std::vector<CardMenuEntry> children;
  friend bool operator==(const CardMenuEntry&, const CardMenuEntry&) = default;
};

struct CardMenuFacts {
  PlacedWidget placed;
  WidgetDescription description;
  /// The automatic choice first; empty where nothing is known of adapters.
  std::vector<NetworkAdapter> adapters;
  ConsentDecision wifiNames = ConsentDecision::notDetermined;
  /// Somebody else decides for how long a consent is: a sandbox's portal.
  bool isConsentElsewhere = false;
};

/// Whether its menu lets the user choose an adapter.
[[nodiscard]] bool hasAdapterChoice(const WidgetDescription& description);

[[nodiscard]] std::vector<CardMenuEntry> cardMenu(const CardMenuFacts& facts,
                                                  const StringTable& strings);

}  // namespace lanternfold
