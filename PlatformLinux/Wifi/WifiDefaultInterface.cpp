#include "PlatformLinux/Wifi/WifiDefaultInterface.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <tuple>

#include <linux/nl80211.h>

namespace lanternfold {

namespace {

constexpr std::array<std::uint32_t, 4> typesBestFirst = {
    NL80211_IFTYPE_STATION, NL80211_IFTYPE_ADHOC, NL80211_IFTYPE_AP, NL80211_IFTYPE_MESH_POINT};

auto rankOf(const WifiInterfaceMessage& interface) {
  const auto type = std::ranges::find(typesBestFirst, interface.interfaceType);
  const bool isJoined = joinsNetworks(interface) && interface.ssid.has_value();
  return std::tuple(!isJoined, type - typesBestFirst.begin(), interface.index);
}

bool canBeDefault(const WifiInterfaceMessage& interface) {
  return interface.index != 0 && !interface.name.empty() &&
         std::ranges::find(typesBestFirst, interface.interfaceType) != typesBestFirst.end();
}

}  // namespace

bool joinsNetworks(const WifiInterfaceMessage& interface) {
  return interface.interfaceType == NL80211_IFTYPE_STATION ||
         interface.interfaceType == NL80211_IFTYPE_ADHOC;
}

std::vector<WifiInterfaceMessage> defaultInterfaceCandidates(
    std::span<const WifiInterfaceMessage> interfaces) {
  std::vector<WifiInterfaceMessage> candidates;
  std::ranges::copy_if(interfaces, std::back_inserter(candidates), canBeDefault);
  std::ranges::sort(candidates, {}, rankOf);
  return candidates;
}

}  // namespace lanternfold
