#include "PlatformLinux/Wifi/WifiModeMapping.h"

#include <algorithm>
#include <array>

#include <linux/nl80211.h>

namespace lanternfold {

namespace {

struct Mode {
  std::uint32_t interfaceType;
  WifiInterfaceMode mode;
};

constexpr std::array<Mode, 13> modes = {{
    {NL80211_IFTYPE_UNSPECIFIED, WifiInterfaceMode::none},
    {NL80211_IFTYPE_ADHOC, WifiInterfaceMode::ibss},
    {NL80211_IFTYPE_STATION, WifiInterfaceMode::station},
    {NL80211_IFTYPE_AP, WifiInterfaceMode::hostAP},
    {NL80211_IFTYPE_AP_VLAN, WifiInterfaceMode::hostAP},
    {NL80211_IFTYPE_WDS, otherWifiInterfaceMode},
    {NL80211_IFTYPE_MONITOR, WifiInterfaceMode::none},
    {NL80211_IFTYPE_MESH_POINT, otherWifiInterfaceMode},
    {NL80211_IFTYPE_P2P_CLIENT, WifiInterfaceMode::station},
    {NL80211_IFTYPE_P2P_GO, WifiInterfaceMode::hostAP},
    {NL80211_IFTYPE_P2P_DEVICE, WifiInterfaceMode::none},
    {NL80211_IFTYPE_OCB, otherWifiInterfaceMode},
    {NL80211_IFTYPE_NAN, WifiInterfaceMode::none},
}};

struct PhyMode {
  WifiGeneration generation;
  WifiPhyMode mode;
};

constexpr std::array<PhyMode, 4> phyModes = {{
    {WifiGeneration::ht, WifiPhyMode::mode11n},
    {WifiGeneration::vht, WifiPhyMode::mode11ac},
    {WifiGeneration::he, WifiPhyMode::mode11ax},
    {WifiGeneration::eht, WifiPhyMode::mode11be},
}};

// In the 6 GHz band everybody speaks 802.11ax, whatever the rate of a single frame.
WifiPhyMode legacyModeOf(WifiChannelBand band, bool onlyOldestRates) {
  switch (band) {
    case WifiChannelBand::band2GHz:
      return onlyOldestRates ? WifiPhyMode::mode11b : WifiPhyMode::mode11g;
    case WifiChannelBand::band5GHz:
      return WifiPhyMode::mode11a;
    case WifiChannelBand::band6GHz:
      return WifiPhyMode::mode11ax;
    default:
      return WifiPhyMode::none;
  }
}

WifiGeneration generationOf(const std::optional<WifiRate>& rate) {
  return rate ? rate->generation : WifiGeneration::legacy;
}

}  // namespace

WifiInterfaceMode modeOfInterfaceType(std::uint32_t interfaceType) {
  const auto mode = std::ranges::find(modes, interfaceType, &Mode::interfaceType);
  return mode == modes.end() ? otherWifiInterfaceMode : mode->mode;
}

WifiGeneration generationInUse(const WifiGenerationEvidence& evidence) {
  const WifiGeneration ofRates =
      std::max(generationOf(evidence.transmitRate), generationOf(evidence.receiveRate));
  if (ofRates != WifiGeneration::legacy) return ofRates;
  if (evidence.channelWidth == NL80211_CHAN_WIDTH_20_NOHT) return WifiGeneration::legacy;
  return evidence.elements == nullptr ? WifiGeneration::legacy : evidence.elements->generation;
}

WifiPhyMode phyModeOf(WifiGeneration generation, WifiChannelBand band, bool onlyOldestRates) {
  const auto mode = std::ranges::find(phyModes, generation, &PhyMode::generation);
  return mode == phyModes.end() ? legacyModeOf(band, onlyOldestRates) : mode->mode;
}

}  // namespace lanternfold
