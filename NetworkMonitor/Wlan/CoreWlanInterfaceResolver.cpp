#include "NetworkMonitor/Wlan/CoreWlanInterfaceResolver.h"

#include <utility>

#include "NetworkMonitor/Wlan/WlanTexts.h"
#include "Support/FatalError.h"

namespace lanternfold {

CoreWlanInterfaceResolver::CoreWlanInterfaceResolver(
    std::shared_ptr<InterfaceResolver> interfaceResolver, const Environment& environment)
    : interfaceResolver_(std::move(interfaceResolver)), environment_(environment) {
  if (!interfaceResolver_) fatalError("a Wi-Fi resolver was made without an interface resolver");
}

std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError>
CoreWlanInterfaceResolver::wlanInterface() {
  const auto wifi = environment_.wifiClient.interface();
  if (!wifi || !wifi->interfaceName) return std::nullopt;
  const auto interface = interfaceResolver_->interfaceNamed(*wifi->interfaceName);
  if (!interface) return std::nullopt;
  return WlanInterface{.active = wifi->powerOn,
                       .displayName = interface->displayName,
                       .mode = interfaceModeText(wifi->interfaceMode, environment_.strings),
                       .interface = *interface,
                       .currentNetwork = currentNetwork(*wifi)};
}

/// None too when a network has been joined whose name is withheld.
std::optional<WlanNetwork> CoreWlanInterfaceResolver::currentNetwork(
    const WifiInterface& wifi) const {
  if (!wifi.ssid) return std::nullopt;
  return WlanNetwork{.ssid = *wifi.ssid,
                     .bssid = wifi.bssid ? *wifi.bssid : notAvailableText(environment_.strings),
                     .metrics = radioFigures(wifi)};
}

WlanMetrics CoreWlanInterfaceResolver::radioFigures(const WifiInterface& wifi) const {
  const StringTable& strings = environment_.strings;
  return {.PHYMode = phyModeText(wifi.activePHYMode, strings),
          .countryCode = wifi.countryCode ? *wifi.countryCode : notAvailableText(strings),
          .security = securityText(wifi.security, strings),
          .channel = channelText(wifi.wlanChannel, strings),
          .rssi = wifi.rssiValue,
          .noise = wifi.noiseMeasurement,
          .transmitPower = wifi.transmitPower,
          .transmitRate = wifi.transmitRate};
}

}  // namespace lanternfold
