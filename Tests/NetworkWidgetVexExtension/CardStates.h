// The states of the adapter's card that several tests look at.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Providers/NetworkAdapterEntry.h"
#include "Tests/Support/FakeStringTable.h"

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

struct CardState {
  std::string name;
  NetworkAdapterEntry entry;
};

inline std::vector<CardState> cardStates() {
  return {{"placeholder", placeholderEntry()},
          {"long", longEntry()},
          {"bare", bareEntry()},
          {"gone", goneEntry()},
          {"none", entryOf({})},
          {"timestamp", timestampEntry()}};
}

}  // namespace lanternfold
