// States of the network that widgets are drawn from in tests.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "NetworkMonitor/Model/NetworkState.h"
#include "Tests/Support/FakeStringTable.h"

namespace lanternfold {

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

inline NetworkState placeholderState() {
  return NetworkState::placeholder(true, FakeStringTable());
}

/// Nothing is known yet.
inline NetworkState initialState() { return NetworkState::initial(FakeStringTable()); }

inline NetworkState noWifiState() {
  NetworkState state = placeholderState();
  state.wlan.reset();
  return state;
}

/// Joined, but the user has not allowed that the network's name is shown.
inline NetworkState withheldState() {
  NetworkState state = placeholderState();
  state.wlan->currentNetwork.reset();
  return state;
}

inline NetworkState notConnectedState() {
  NetworkState state = withheldState();
  WlanInterface& wlan = *state.wlan;
  wlan.interface.name = "wlp0s20f3";
  wlan.interface.active = false;
  wlan.interface.supportsIPv4 = false;
  wlan.interface.IPv4.clear();
  wlan.interface.metrics = {};
  return state;
}

inline NetworkState adaptersState(int count) {
  NetworkState state = placeholderState();
  state.others.clear();
  for (int index = 0; index < count; ++index) {
    BasicInterface interface = sampleInterface("en" + std::to_string(index + 1));
    interface.displayName = "Port " + interface.name;
    interface.IPv4.front().address = "172.17.30." + std::to_string(200 + index);
    state.others.push_back(std::move(interface));
  }
  return state;
}

inline NetworkState noWifiFourAdaptersState() {
  NetworkState state = adaptersState(4);
  state.wlan.reset();
  return state;
}

/// Two cards, the second of which carries data.
inline NetworkState cellularState() {
  NetworkState state = placeholderState();
  CellularProvider provider;
  provider.active = true;
  provider.displayName = "Cellular";
  provider.carriers = {{.name = "First Carrier", .radioAccessTechnology = "LTE"},
                       {.name = "Second Carrier", .radioAccessTechnology = "5G"}};
  provider.dataCarrierIndex = 1;
  provider.metrics.recvBytes = 5'000'000;
  state.cellular = provider;
  return state;
}

/// The longest texts that each row can have.
inline NetworkState longState() {
  NetworkState state = placeholderState();
  BasicInterface adapter = sampleInterface("enp0s31f6u1u2u3");
  adapter.displayName = "Realtek Semiconductor RTL8125 2.5 Gigabit Ethernet Controller (rev 05)";
  adapter.IPv4 = {{"192.168.100.200", "255.255.255.128", "192.168.100.129", "192.168.100.129/25"}};
  state.others = {adapter};
  InternetInfo& internet = state.internet;
  internet.isp = "Dorfnetz Beispiel Genossenschaft und Telekommunikationsgesellschaft mbH & Co. KG";
  internet.ip = "203.0.113.212";
  internet.ipv6 = "2001:0db8:85a3:1234:5678:8a2e:0370:7334";
  internet.dns = {"2001:0db8:85a3:1234:5678:8a2e:0370:0053"};
  internet.interface = adapter;
  internet.metrics.recvBytes = ~0ULL;
  internet.metrics.sentBytes = 1023ULL << 40;
  WlanInterface& wlan = *state.wlan;
  wlan.interface.name = "wlx0123456789ab";
  wlan.currentNetwork->ssid = "<b>Caf\u00e9 & \"Bar\"</b> WWWWWWWWWWW";
  wlan.currentNetwork->metrics->security = "WPA Enterprise Mixed";
  wlan.currentNetwork->metrics->channel = "149 (5 GHz, 160 MHz)";
  return state;
}

}  // namespace lanternfold
