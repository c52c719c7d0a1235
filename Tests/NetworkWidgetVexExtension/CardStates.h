// Every widget, in every family, in every state that tests look at.
#pragma once

#include <array>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/BandwidthMonitorEntryView.h"
#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "NetworkWidgetVexExtension/Views/NetworkStateWidgetEntryView.h"
#include "Tests/NetworkWidgetVexExtension/SampleStates.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/Layout.h"

namespace lanternfold {

inline NetworkAdapterEntry placeholderEntry() { return {{}, placeholderState(), {}}; }

inline NetworkAdapterEntry entryOf(std::vector<BasicInterface> interfaces) {
  NetworkAdapterEntry entry = placeholderEntry();
  entry.networkState.others = std::move(interfaces);
  return entry;
}

inline NetworkAdapterEntry longEntry() { return {{}, longState(), {}}; }

/// Inactive, without addresses and counters.
inline NetworkAdapterEntry bareEntry() {
  BasicInterface interface = sampleInterface();
  interface.active = false;
  interface.supportsIPv4 = false;
  interface.IPv4.clear();
  interface.hwAddress.reset();
  interface.metrics = {};
  return entryOf({interface});
}

inline NetworkAdapterEntry goneEntry() {
  NetworkAdapterEntry entry = placeholderEntry();
  entry.configuration.adapter = NetworkAdapter{"en5", "USB adapter", {}};
  return entry;
}

inline NetworkAdapterEntry timestampEntry() {
  NetworkAdapterEntry entry = placeholderEntry();
  entry.configuration.showTimestamp = true;
  return entry;
}

inline NetworkStateEntry stateEntry(NetworkState state, bool showTimestamp = false) {
  return {.date = {},
          .networkState = std::move(state),
          .configuration = {.showTimestamp = showTimestamp},
          .isSnapshot = true};
}

struct CardState {
  std::string name;
  WidgetFamily family;
  std::function<View(const StringTable&)> view;
  LayoutDirection direction = LayoutDirection::leftToRight;

  [[nodiscard]] LaidOutView laidOut(double width) const {
    const FakeStringTable strings;
    const MetricTextMeasurer measurer;
    return layOut(view(strings), {width, widgetSize(family).height},
                  {.measurer = measurer, .drawingTime = "Today, 10:30", .direction = direction});
  }
  [[nodiscard]] LaidOutView laidOut() const { return laidOut(widgetSize(family).width); }

  friend void PrintTo(const CardState& state, std::ostream* stream) { *stream << state.name; }
};

inline CardState adapterCard(std::string name, NetworkAdapterEntry entry) {
  return {std::move(name), WidgetFamily::medium,
          [entry = std::move(entry)](const StringTable& strings) {
            return NetworkAdapterWidgetEntryView{entry}.body({strings});
          }};
}

/// A widget of the network's state, called by its categories.
struct StateWidget {
  const char* name;
  NetworkSourceCategory categories;
  std::vector<std::pair<const char*, WidgetFamily>> families;
};

inline std::vector<StateWidget> stateWidgets() {
  using enum WidgetFamily;
  return {{"panoramic",
           NetworkSourceCategory::all(),
           {{"small", small}, {"medium", medium}, {"large", large}}},
          {"internet", NetworkSourceCategory::internet(), {{"small", small}, {"medium", medium}}},
          {"wlan", NetworkSourceCategory::wlan(), {{"small", small}, {"medium", medium}}}};
}

inline CardState stateCard(const StateWidget& widget, WidgetFamily family, std::string name,
                           NetworkStateEntry entry) {
  return {std::move(name), family,
          [family, categories = widget.categories,
           entry = std::move(entry)](const StringTable& strings) {
            return NetworkStateWidgetEntryView{entry}.body(
                {.strings = strings, .widgetFamily = family, .shownCategories = categories});
          }};
}

/// A state, and the categories in which it differs from the placeholder's.
struct SampleState {
  const char* name;
  NetworkState network;
  NetworkSourceCategory differing;
};

inline std::vector<SampleState> sampleStates() {
  const auto internet = NetworkSourceCategory::internet();
  const auto wlan = NetworkSourceCategory::wlan();
  const auto cellular = NetworkSourceCategory::cellular();
  const auto other = NetworkSourceCategory::other();
  const auto all = NetworkSourceCategory::all();
  return {{"placeholder", placeholderState(), all},
          {"initial", initialState(), all},
          {"no_wifi", noWifiState(), wlan},
          {"withheld", withheldState(), wlan},
          {"not_connected", notConnectedState(), wlan},
          {"cellular", cellularState(), cellular},
          {"no_wifi_four_adapters", noWifiFourAdaptersState(), wlan.unionWith(other)},
          {"three_adapters", adaptersState(3), other},
          {"five_adapters", adaptersState(5), other},
          {"twelve_adapters", adaptersState(12), other},
          {"long", longState(), internet.unionWith(wlan).unionWith(other)}};
}

inline std::vector<CardState> stateWidgetCards() {
  std::vector<CardState> cards;
  for (const StateWidget& widget : stateWidgets()) {
    for (const auto& [familyName, family] : widget.families) {
      const std::string prefix = std::string(widget.name) + '_' + familyName + '_';
      for (const SampleState& state : sampleStates()) {
        if (state.differing.isDisjoint(widget.categories)) continue;
        cards.push_back(stateCard(widget, family, prefix + state.name, stateEntry(state.network)));
      }
      const NetworkStateEntry withTimestamp = stateEntry(placeholderState(), true);
      cards.push_back(stateCard(widget, family, prefix + "timestamp", withTimestamp));
      const auto addMirrored = [&](const char* state, NetworkStateEntry entry) {
        cards.push_back(stateCard(widget, family, prefix + state, std::move(entry)));
        cards.back().direction = LayoutDirection::rightToLeft;
      };
      addMirrored("right_to_left", stateEntry(placeholderState()));
      addMirrored("right_to_left_long", stateEntry(longState()));
      if (widget.categories.contains(NetworkSourceCategory::wlan())) {
        addMirrored("right_to_left_withheld", stateEntry(withheldState()));
      }
      addMirrored("right_to_left_timestamp", withTimestamp);
    }
  }
  return cards;
}

inline std::vector<CardState> adapterCards() {
  std::vector<CardState> cards;
  for (const SampleState& state : sampleStates()) {
    if (!state.differing.contains(NetworkSourceCategory::other())) continue;
    cards.push_back(
        adapterCard(std::string("adapter_medium_") + state.name, {{}, state.network, {}}));
  }
  cards.push_back(adapterCard("adapter_medium_right_to_left", placeholderEntry()));
  cards.back().direction = LayoutDirection::rightToLeft;
  cards.push_back(adapterCard("adapter_medium_bare", bareEntry()));
  cards.push_back(adapterCard("adapter_medium_gone", goneEntry()));
  cards.push_back(adapterCard("adapter_medium_timestamp", timestampEntry()));
  return cards;
}

inline std::vector<CardState> cardStates() {
  std::vector<CardState> cards = stateWidgetCards();
  for (CardState& card : adapterCards()) cards.push_back(std::move(card));
  cards.push_back({"bandwidth_small", WidgetFamily::small, [](const StringTable& strings) {
                     return BandwidthMonitorEntryView{}.body(
                         {.strings = strings, .widgetFamily = WidgetFamily::small});
                   }});
  return cards;
}

}  // namespace lanternfold
