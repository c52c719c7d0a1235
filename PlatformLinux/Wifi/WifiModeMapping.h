// What an interface does and which generation it speaks, in the values of the seam. Pure.
//
// Read by: the choice of the default interface, the report.
#pragma once

#include <cstdint>
#include <optional>

#include "Platform/WifiClient.h"
#include "PlatformLinux/Wifi/InformationElements.h"
#include "PlatformLinux/Wifi/WifiGeneration.h"
#include "PlatformLinux/Wifi/WifiRate.h"

namespace lanternfold {

/// A mode that the texts do not know: a mesh, or what a later kernel can.
inline constexpr WifiInterfaceMode otherWifiInterfaceMode{-1};

/// `interfaceType` is a NL80211_IFTYPE_*.
[[nodiscard]] WifiInterfaceMode modeOfInterfaceType(std::uint32_t interfaceType);

/// What is known of the generation that a connection uses.
struct WifiGenerationEvidence {
  std::optional<WifiRate> transmitRate;
  std::optional<WifiRate> receiveRate;
  std::optional<std::uint32_t> channelWidth;  ///< NL80211_CHAN_WIDTH_*
  const InformationElements* elements = nullptr;
};

/// The later generation of both rates. While both are legacy ones, as before the first data and for
/// drivers that give no kind, a channel without 802.11n is legacy, and elsewhere the network's own
/// announcement counts.
[[nodiscard]] WifiGeneration generationInUse(const WifiGenerationEvidence& evidence);

/// The first generations are told apart by the band, and 802.11b by its rates alone. None for a
/// legacy network of no known band.
[[nodiscard]] WifiPhyMode phyModeOf(WifiGeneration generation, WifiChannelBand band,
                                    bool onlyOldestRates);

}  // namespace lanternfold
