// The seam to the machine's Wi-Fi: its interface and the network that it has joined.
//
// Linux side: `LinuxWifiClient` (nl80211). Fake: `FakeWifiClient`. Both pass the same contract
// tests.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace lanternfold {

// The numbers are those of the platform that the texts were made for; values beyond the named ones
// are allowed and stand for what the texts do not know.

enum class WifiInterfaceMode : std::int64_t { none = 0, station = 1, ibss = 2, hostAP = 3 };

enum class WifiPhyMode : std::int64_t {
  none = 0,
  mode11a = 1,
  mode11b = 2,
  mode11g = 3,
  mode11n = 4,
  mode11ac = 5,
  mode11ax = 6,
  mode11be = 7,
};

enum class WifiSecurity : std::int64_t {
  none = 0,
  wep = 1,
  wpaPersonal = 2,
  wpaPersonalMixed = 3,
  wpa2Personal = 4,
  personal = 5,
  dynamicWep = 6,
  wpaEnterprise = 7,
  wpaEnterpriseMixed = 8,
  wpa2Enterprise = 9,
  enterprise = 10,
  wpa3Personal = 11,
  wpa3Enterprise = 12,
  wpa3Transition = 13,
  owe = 14,
  oweTransition = 15,
  unknown = INT64_MAX,
};

enum class WifiChannelBand : std::int64_t { unknown = 0, band2GHz = 1, band5GHz = 2, band6GHz = 3 };

enum class WifiChannelWidth : std::int64_t {
  unknown = 0,
  width20MHz = 1,
  width40MHz = 2,
  width80MHz = 3,
  width160MHz = 4,
  width320MHz = 5,
};

struct WifiChannel {
  std::int64_t channelNumber = 0;
  WifiChannelBand channelBand = WifiChannelBand::unknown;
  WifiChannelWidth channelWidth = WifiChannelWidth::unknown;
  friend bool operator==(const WifiChannel&, const WifiChannel&) = default;
};

/// The Wi-Fi interface at one moment. A figure that the driver does not give is 0.
struct WifiInterface {
  std::optional<std::string> interfaceName;
  WifiInterfaceMode interfaceMode = WifiInterfaceMode::none;
  bool powerOn = false;
  /// UTF-8, whatever the network's name was made of: what is not, and what could deceive a reader,
  /// is escaped. None without a network and without the user's consent, as is the next one.
  std::optional<std::string> ssid;
  std::optional<std::string> bssid;  ///< lower-case pairs with colons
  WifiPhyMode activePHYMode = WifiPhyMode::none;
  std::optional<std::string> countryCode;  ///< two letters; none for the world domain
  WifiSecurity security = WifiSecurity::unknown;
  std::optional<WifiChannel> wlanChannel;
  std::int64_t rssiValue = 0;         ///< dBm
  std::int64_t noiseMeasurement = 0;  ///< dBm
  std::int64_t transmitPower = 0;     ///< mW
  double transmitRate = 0;            ///< Mbit/s
  friend bool operator==(const WifiInterface&, const WifiInterface&) = default;
};

/// Any thread.
class WifiClient {
 public:
  virtual ~WifiClient() = default;

  /// The default interface: the one that is associated, else the first that could be; none on a
  /// machine without Wi-Fi, or whose kernel refuses to tell. Asks the system afresh.
  [[nodiscard]] virtual std::optional<WifiInterface> interface() const = 0;
};

}  // namespace lanternfold
