// Everything the kernel tells of the default Wi-Fi interface, beyond what the seam's record holds.
//
// Made by: `wifiReportOf`. Read by: the command line's JSON. Without the user's consent it holds no
// name of a network or a cell.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "Platform/NetworkKernel.h"
#include "Platform/WifiClient.h"
#include "PlatformLinux/Wifi/WifiGeneration.h"
#include "PlatformLinux/Wifi/WifiRate.h"

namespace lanternfold {

/// How the joined network protects its traffic, by the names of `SuiteNames.h`; several where the
/// network leaves a choice, in its order of preference.
struct WifiProtection {
  std::vector<std::string> authentications;
  std::vector<std::string> pairwiseCiphers;
  std::string groupCipher;
  std::optional<std::string> managementCipher;
  bool offersManagementProtection = false;
  bool requiresManagementProtection = false;
  friend bool operator==(const WifiProtection&, const WifiProtection&) = default;
};

/// One radio link. A connection has one, or several of the multi-link kind.
struct WifiLink {
  std::optional<std::uint8_t> linkId;  ///< 0 to 14; absent for an ordinary connection
  std::optional<std::string> bssid;    ///< lower-case pairs with colons; withheld without consent
  std::optional<WifiChannel> channel;
  std::optional<std::uint32_t> frequencyMegahertz;  ///< of the primary 20 MHz
  std::optional<std::uint32_t> widthMegahertz;      ///< 160 for 80+80
  std::optional<std::uint32_t> center1Megahertz;
  std::optional<std::uint32_t> center2Megahertz;
  std::optional<WifiGeneration> generation;
  std::optional<std::int64_t> signalDbm;
  std::optional<std::int64_t> signalAverageDbm;
  std::optional<WifiRate> transmitRate;
  std::optional<WifiRate> receiveRate;
  friend bool operator==(const WifiLink&, const WifiLink&) = default;
};

struct WifiReport {
  WifiInterface interface;
  std::uint32_t interfaceIndex = 0;
  std::uint32_t radioIndex = 0;                ///< the number N of phyN
  std::optional<std::string> hardwareAddress;  ///< this machine's own
  /// Whether a network is joined; tells a withheld name from no network.
  bool isJoined = false;
  /// Whether the names of the joined network and its cells are left out for lack of consent.
  bool namesWithheld = false;
  std::optional<WifiGeneration> generation;  ///< absent unless joined
  std::optional<WifiProtection> rsn;         ///< WPA2 and WPA3
  std::optional<WifiProtection> wpa;         ///< the first WPA
  std::optional<std::int64_t> signalAverageDbm;
  std::optional<std::int64_t> noiseDbm;
  std::optional<std::int64_t> transmitPowerMillibels;       ///< 0.01 dBm
  std::optional<std::uint32_t> expectedThroughputKilobits;  ///< kbit/s
  std::optional<std::uint32_t> connectedSeconds;
  std::vector<WifiLink> links;  ///< the first one is that of the interface's figures
  friend bool operator==(const WifiReport&, const WifiReport&) = default;
};

/// None on a machine without Wi-Fi, which a kernel that refuses to tell must not be taken for.
using WifiReading = std::expected<std::optional<WifiReport>, NetworkKernelError>;

}  // namespace lanternfold
