// The states of the widgets' cards that several tests look at.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "NetworkWidgetVexExtension/Views/NetworkStateWidgetEntryView.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/MetricTextMeasurer.h"
#include "ViewTree/Layout.h"

namespace lanternfold {

inline NetworkAdapterEntry placeholderEntry() {
  return {{}, NetworkState::placeholder(true, FakeStringTable()), {}};
}

inline BasicInterface sampleInterface(std::string name = "eth0") {
  BasicInterface interface;
  interface.active = true;
  interface.displayName = "Virtio network device";
  interface.name = std::move(name);
  interface.type = InterfaceType::ethernet;
  interface.supportsIPv4 = true;
  interface.IPv4 = {{"172.17.30.214", "255.255.0.0", "172.17.0.1", "172.17.0.1/16"}};
  interface.hwAddress = "02:42:AC:11:1E:D6";
  interface.metrics.recvBytes = 987'654'321;
  interface.metrics.sentBytes = 848;
  return interface;
}

inline NetworkAdapterEntry entryOf(std::vector<BasicInterface> interfaces) {
  NetworkAdapterEntry entry = placeholderEntry();
  entry.networkState.others = std::move(interfaces);
  return entry;
}

inline NetworkAdapterEntry longEntry() {
  BasicInterface interface = sampleInterface("enp0s31f6u1u2u3");
  interface.displayName = "Realtek Semiconductor RTL8125 2.5 Gigabit Ethernet Controller (rev 05)";
  return entryOf({interface});
}

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

inline NetworkStateEntry wlanPlaceholderEntry() {
  return {.date = {},
          .networkState = NetworkState::placeholder(true, FakeStringTable()),
          .configuration = {},
          .isSnapshot = true};
}

/// Joined, but the user has not allowed that the network's name is shown.
inline NetworkStateEntry wlanWithheldEntry() {
  NetworkStateEntry entry = wlanPlaceholderEntry();
  entry.networkState.wlan->currentNetwork.reset();
  return entry;
}

inline NetworkStateEntry wlanNotConnectedEntry() {
  NetworkStateEntry entry = wlanWithheldEntry();
  WlanInterface& wlan = *entry.networkState.wlan;
  wlan.interface.name = "wlp0s20f3";
  wlan.interface.active = false;
  wlan.interface.supportsIPv4 = false;
  wlan.interface.IPv4.clear();
  wlan.interface.metrics = {};
  return entry;
}

/// The longest name that a network can have.
inline NetworkStateEntry wlanLongEntry() {
  NetworkStateEntry entry = wlanPlaceholderEntry();
  WlanInterface& wlan = *entry.networkState.wlan;
  wlan.interface.name = "wlx0123456789ab";
  wlan.currentNetwork->ssid = "<b>Caf\u00e9 & \"Bar\"</b> WWWWWWWWWWW";
  wlan.currentNetwork->metrics->security = "WPA Enterprise Mixed";
  wlan.currentNetwork->metrics->channel = "149 (5GHz, 160MHz)";
  return entry;
}

inline NetworkStateEntry wlanMissingEntry() {
  NetworkStateEntry entry = wlanPlaceholderEntry();
  entry.networkState.wlan.reset();
  return entry;
}

struct CardState {
  std::string name;
  WidgetFamily family;
  std::function<View(const StringTable&)> view;

  [[nodiscard]] LaidOutView laidOut(double width) const {
    const FakeStringTable strings;
    const MetricTextMeasurer measurer;
    return layOut(view(strings), {width, widgetSize(family).height}, {measurer, "Today, 10:30"});
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

inline CardState wlanCard(std::string name, WidgetFamily family, NetworkStateEntry entry) {
  return {std::move(name), family, [family, entry = std::move(entry)](const StringTable& strings) {
            return NetworkStateWidgetEntryView{entry}.body(
                {.strings = strings,
                 .widgetFamily = family,
                 .shownCategories = NetworkSourceCategory::wlan()});
          }};
}

inline std::vector<CardState> cardStates() {
  using enum WidgetFamily;
  return {adapterCard("placeholder", placeholderEntry()),
          adapterCard("long", longEntry()),
          adapterCard("bare", bareEntry()),
          adapterCard("gone", goneEntry()),
          adapterCard("none", entryOf({})),
          adapterCard("timestamp", timestampEntry()),
          wlanCard("wlan_small", small, wlanPlaceholderEntry()),
          wlanCard("wlan_medium", medium, wlanPlaceholderEntry()),
          wlanCard("wlan_small_long", small, wlanLongEntry()),
          wlanCard("wlan_medium_long", medium, wlanLongEntry()),
          wlanCard("wlan_small_withheld", small, wlanWithheldEntry()),
          wlanCard("wlan_medium_withheld", medium, wlanWithheldEntry()),
          wlanCard("wlan_small_not_connected", small, wlanNotConnectedEntry()),
          wlanCard("wlan_medium_not_connected", medium, wlanNotConnectedEntry()),
          wlanCard("wlan_small_missing", small, wlanMissingEntry()),
          wlanCard("wlan_medium_missing", medium, wlanMissingEntry())};
}

}  // namespace lanternfold
