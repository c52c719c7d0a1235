// The sample content of the gallery, figure by figure.
#include "NetworkMonitor/Model/NetworkState.h"

namespace lanternfold {
namespace {

InternetInfo sampleInternet(bool withGeo, const StringTable& strings) {
  InternetInfo info{
      .active = true,
      .displayName = strings.localized("Internet"),
      .ip = "12.34.56.78",
      .supportsIPv6 = true,
      .ipv6 = "2001:db8:0:0:1:0:0:ef",
      .dns = {"8.8.8.8", "8.8.4.4"},
      .metrics = {.sentBytes = 2484838349,
                  .recvBytes = 18383619393,
                  .sentError = 2,
                  .recvError = 6,
                  .sentPacket = 880838,
                  .recvPacket = 1484127},
  };
  if (withGeo) {
    info.isp = "Your ISP Name";
    info.country = "IT";
  }
  return info;
}

BasicInterface sampleWlanInterface(const StringTable& strings) {
  return {
      .active = true,
      .displayName = strings.localized("Wi-Fi"),
      .metrics = {.sentBytes = 2184382184,
                  .recvBytes = 16028293550,
                  .sentError = 2,
                  .recvError = 6,
                  .sentPacket = 840838,
                  .recvPacket = 1184127},
      .name = "en0",
      .type = InterfaceType::wlan,
      .supportsIPv4 = true,
      // The block is written with the router's address: intended, and what the rows show.
      .IPv4 = {{.address = "192.168.0.8",
                .netmask = "255.255.255.0",
                .gateway = "192.168.0.1",
                .cidr = "192.168.0.1/24"}},
      .hwAddress = "AB:CD:EF:12:34:56",
  };
}

WlanNetwork sampleNetwork() {
  return {
      .ssid = "Home Network",
      .bssid = "12:34:56:AB:CD:EF",
      .metrics = WlanMetrics{.PHYMode = "802.11ac",
                             .countryCode = "IT",
                             .security = "WPA2 Personal",
                             .channel = "44 (5 GHz, 80 MHz)",
                             .rssi = -39,
                             .noise = -92,
                             .transmitPower = 1,
                             .transmitRate = 1300.0},
  };
}

BasicInterface sampleEthernet() {
  return {
      .active = true,
      .displayName = "Ethernet Adapter",
      .metrics = {.sentBytes = 4133382184,
                  .recvBytes = 11319153550,
                  .sentError = 2,
                  .recvError = 6,
                  .sentPacket = 1840838,
                  .recvPacket = 3984127},
      .name = "en2",
      .type = InterfaceType::ethernet,
      .supportsIPv4 = true,
      .IPv4 = {{.address = "192.168.0.9",
                .netmask = "255.255.255.0",
                .gateway = "192.168.0.1",
                .cidr = "192.168.0.1/24"}},
      .hwAddress = "AB:CD:EF:12:34:57",
  };
}

}  // namespace

NetworkState NetworkState::placeholder(bool withGeo, const StringTable& strings) {
  NetworkState state{
      .internet = sampleInternet(withGeo, strings),
      .wlan = WlanInterface{.active = true,
                            .displayName = strings.localized("Wi-Fi"),
                            .interface = sampleWlanInterface(strings),
                            .currentNetwork = sampleNetwork()},
      .others = {sampleEthernet()},
  };
  state.cellularEnabled = state.cellular.has_value();
  state.multipleSim = state.cellular && state.cellular->carriers.size() > 1;
  return state;
}

}  // namespace lanternfold
