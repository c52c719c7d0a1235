// What is known of one link when it is classified: what rtnetlink says of it, with what the device
// tree and nl80211 add.
//
// Made by: `LinkSurvey`. Read by: `classifyLink`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lanternfold {

/// What a Wi-Fi interface does, as far as it matters to whether it is an adapter.
enum class WirelessRole {
  network,    ///< station, access point, ad hoc, mesh: carries the machine's traffic
  auxiliary,  ///< monitor, Wi-Fi Direct, an access point's VLAN: a second use of the radio
};

/// Whether a link of this kind is what a device's driver makes: one without a kind, or a port of a
/// router's switch ("dsa", a kind since Linux 6.1). All other kinds are made in software.
[[nodiscard]] constexpr bool isKindOfDevices(std::string_view kind) {
  return kind.empty() || kind == "dsa";
}

struct LinkFacts {
  std::string name;
  std::uint32_t index = 0;
  /// ARPHRD_* of the link layer.
  std::uint16_t hardwareType = 0;
  bool isLoopback = false;
  /// IFLA_INFO_KIND ("veth", "bridge"); empty for a link that a device driver made.
  std::string kind;
  /// Whether another link of this machine is its master, and of which kind that one is. A master
  /// without a kind is the front of a paravirtual pair.
  bool hasMaster = false;
  std::string masterKind;
  /// Whether it stands on a device (a PCI card, a USB stick, a virtio device).
  bool hasDevice = false;
  /// DEVTYPE of the link ("wlan", "wwan", "bluetooth"); empty when the kernel gives none or the
  /// device tree at hand shows another network namespace.
  std::string deviceType;
  /// The device's driver ("virtio_net"); empty when unknown.
  std::string driver;
  /// Absent for links that are not Wi-Fi.
  std::optional<WirelessRole> wirelessRole;

  friend bool operator==(const LinkFacts&, const LinkFacts&) = default;
};

}  // namespace lanternfold
