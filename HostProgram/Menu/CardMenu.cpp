#include "HostProgram/Menu/CardMenu.h"

#include <utility>

#include "NetworkWidgetVexExtension/Views/AdapterChoice.h"
#include "NetworkWidgetVexExtension/Views/WidgetFamilyTitle.h"

namespace lanternfold {
namespace {

using Kind = CardMenuEntry::Kind;
using Entries = std::vector<CardMenuEntry>;

CardMenuEntry command(std::string label, CardCommand action) {
  return {.kind = Kind::command, .label = std::move(label), .action = action};
}

CardMenuEntry choice(std::string label, bool isChosen, CardMenuAction action) {
  return {.kind = Kind::choice,
          .label = std::move(label),
          .isChosen = isChosen,
          .action = std::move(action)};
}

CardMenuEntry submenu(std::string label, Entries children) {
  return {.kind = Kind::submenu, .label = std::move(label), .children = std::move(children)};
}

CardMenuEntry separator() { return {.kind = Kind::separator}; }

/// A widget of one size has nothing to choose.
void addSizes(Entries& entries, const CardMenuFacts& facts, const StringTable& strings) {
  if (facts.description.supportedFamilies.size() < 2) return;
  Entries sizes;
  for (const WidgetFamily family : facts.description.supportedFamilies) {
    sizes.push_back(choice(widgetFamilyTitle(family, strings), family == facts.placed.family,
                           ChooseFamily{family}));
  }
  entries.push_back(submenu(strings.localized("Size"), std::move(sizes)));
}

bool isAutomatic(const std::optional<AdapterParameter>& chosen) {
  return !chosen || !chosen->identifier || chosen->identifier == automaticAdapterIdentifier;
}

void addAdapters(Entries& entries, const CardMenuFacts& facts, const StringTable& strings) {
  if (!hasAdapterChoice(facts.description) || facts.adapters.empty()) return;
  const std::optional<AdapterParameter>& chosen = facts.placed.configuration.adapter;
  bool isThere = isAutomatic(chosen);
  Entries adapters;
  for (const NetworkAdapter& adapter : facts.adapters) {
    if (adapter.identifier == automaticAdapterIdentifier) {
      adapters.push_back(choice(adapter.display, isAutomatic(chosen), ChooseAdapter{}));
      continue;
    }
    const bool isChosen = !isAutomatic(chosen) && chosen->identifier == adapter.identifier;
    isThere = isThere || isChosen;
    adapters.push_back(
        choice(adapter.display, isChosen,
               ChooseAdapter{AdapterParameter{adapter.identifier, adapter.display}}));
  }
  // An adapter that is unplugged stays the user's choice, and is seen to be.
  if (!isThere) adapters.push_back(choice(chosen->display, true, ChooseAdapter{chosen}));
  entries.push_back(submenu(strings.localized("Adapter"), std::move(adapters)));
}

void addTime(Entries& entries, const CardMenuFacts& facts, const StringTable& strings) {
  if (facts.description.configuration == ConfigurationKind::staticConfiguration) return;
  const bool isShown = facts.placed.configuration.showTimestamp.value_or(false);
  entries.push_back({.kind = Kind::check,
                     .label = strings.localized("Show time of update"),
                     .isChosen = isShown,
                     .action = ShowTime{!isShown}});
}

CardMenuEntry wifiNames(const CardMenuFacts& facts, const StringTable& strings) {
  const auto decision = [&facts](std::string label, ConsentDecision value) {
    const bool isSame = facts.isConsentElsewhere && value == ConsentDecision::authorizedAlways &&
                        facts.wifiNames == ConsentDecision::authorizedWhenInUse;
    return choice(std::move(label), facts.wifiNames == value || isSame, DecideWifiNames{value});
  };
  Entries decisions;
  if (facts.wifiNames == ConsentDecision::notDetermined) {
    decisions.push_back(decision(strings.localized("Not decided"), facts.wifiNames));
  }
  decisions.push_back(
      decision(strings.localized("Always show"), ConsentDecision::authorizedAlways));
  if (!facts.isConsentElsewhere) {
    decisions.push_back(
        decision(strings.localized("Show while in use"), ConsentDecision::authorizedWhenInUse));
  }
  decisions.push_back(decision(strings.localized("Don't show"), ConsentDecision::denied));
  return submenu(strings.localized("Wi-Fi names"), std::move(decisions));
}

}  // namespace

bool hasAdapterChoice(const WidgetDescription& description) {
  return description.intent == "AdapterConfigurationIntent";
}

std::vector<CardMenuEntry> cardMenu(const CardMenuFacts& facts, const StringTable& strings) {
  Entries entries;
  addSizes(entries, facts, strings);
  addAdapters(entries, facts, strings);
  addTime(entries, facts, strings);
  if (!entries.empty()) entries.push_back(separator());
  entries.push_back(command(strings.localized("Refresh"), CardCommand::refresh));
  entries.push_back(command(strings.localized("Remove"), CardCommand::remove));
  entries.push_back(separator());
  entries.push_back(command(strings.localized("Add widget") + "…", CardCommand::addWidget));
  entries.push_back(wifiNames(facts, strings));
  entries.push_back(separator());
  entries.push_back(command(strings.localized("Quit"), CardCommand::quit));
  return entries;
}

}  // namespace lanternfold
