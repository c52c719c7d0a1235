#include "PlatformLinux/Adapters/LinkClassification.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <linux/if_arp.h>

namespace lanternfold {

namespace {

template <std::size_t Count>
bool isOneOf(std::string_view text, const std::array<std::string_view, Count>& list) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

/// A link that a driver made for a device.
bool isDeviceLink(const LinkFacts& link) { return link.hasDevice && isKindOfDevices(link.kind); }

bool isLoopback(const LinkFacts& link) {
  return link.isLoopback || link.hardwareType == ARPHRD_LOOPBACK;
}

/// Also a monitor interface whose wireless side is unknown: its link layer is bare 802.11.
bool isAuxiliaryWifi(const LinkFacts& link) {
  return link.wirelessRole == WirelessRole::auxiliary || link.hardwareType == ARPHRD_IEEE80211 ||
         link.hardwareType == ARPHRD_IEEE80211_PRISM ||
         link.hardwareType == ARPHRD_IEEE80211_RADIOTAP;
}

/// Modems announce themselves by DEVTYPE; the drivers and the bare IP link layer stand in where
/// the device tree cannot be believed. "wwan" is also a kind: the modem's further channels.
bool isModem(const LinkFacts& link) {
  static constexpr std::array<std::string_view, 5> drivers = {
      "qmi_wwan", "cdc_mbim", "huawei_cdc_ncm", "sierra_net", "hso"};
  return link.deviceType == "wwan" || link.kind == "wwan" || isOneOf(link.driver, drivers) ||
         (link.hardwareType == ARPHRD_RAWIP && isDeviceLink(link));
}

bool isWifi(const LinkFacts& link) {
  return link.hardwareType == ARPHRD_ETHER && isDeviceLink(link) &&
         (link.wirelessRole == WirelessRole::network || link.deviceType == "wlan");
}

bool isBluetooth(const LinkFacts& link) { return link.deviceType == "bluetooth"; }

bool isAggregate(const LinkFacts& link) {
  static constexpr std::array<std::string_view, 2> kinds = {"bond", "team"};
  return isOneOf(link.kind, kinds);
}

bool isEthernetDevice(const LinkFacts& link) {
  return link.hardwareType == ARPHRD_ETHER && isDeviceLink(link);
}

/// "eth0" as container engines name the inner end, or a name of the literal family.
bool isNamedAsAdapter(std::string_view name) {
  if (name.starts_with("en")) return true;
  if (!name.starts_with("eth") || name.size() == 3) return false;
  const std::string_view number = name.substr(3);
  return std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// The kinds that give a container its only way out; a tap is of kind "tun" with Ethernet frames.
bool isContainerEnd(const LinkFacts& link) {
  static constexpr std::array<std::string_view, 5> kinds = {"veth", "macvlan", "macvtap", "ipvlan",
                                                            "tun"};
  return link.hardwareType == ARPHRD_ETHER && isOneOf(link.kind, kinds) &&
         isNamedAsAdapter(link.name);
}

/// Below a bond or team, or the hidden half of a paravirtual pair (the passed-through card behind
/// a virtual one): its traffic is the master's. A port of a bridge is still its own adapter.
bool isSubordinate(const LinkFacts& link) {
  static constexpr std::array<std::string_view, 3> kinds = {"bond", "team", ""};
  return link.hasMaster && isOneOf(link.masterKind, kinds);
}

struct Rule {
  bool (*applies)(const LinkFacts&);
  LinkClass linkClass;
};

/// The first rule that applies decides.
constexpr std::array<Rule, 8> rules = {{
    {isLoopback, {LinkFamily::none, PathInterfaceType::loopback, std::nullopt}},
    {isAuxiliaryWifi, {LinkFamily::none, PathInterfaceType::other, std::nullopt}},
    {isModem, {LinkFamily::cellular, PathInterfaceType::cellular, ConfiguredInterfaceType::other}},
    {isWifi, {LinkFamily::adapter, PathInterfaceType::wifi, ConfiguredInterfaceType::ieee80211}},
    {isBluetooth,
     {LinkFamily::adapter, PathInterfaceType::other, ConfiguredInterfaceType::bluetooth}},
    {isAggregate,
     {LinkFamily::adapter, PathInterfaceType::wiredEthernet, ConfiguredInterfaceType::other}},
    {isEthernetDevice,
     {LinkFamily::adapter, PathInterfaceType::wiredEthernet, ConfiguredInterfaceType::ethernet}},
    {isContainerEnd,
     {LinkFamily::adapter, PathInterfaceType::wiredEthernet, ConfiguredInterfaceType::ethernet}},
}};

}  // namespace

LinkClass classifyLink(const LinkFacts& link) {
  const auto* const rule = std::find_if(rules.begin(), rules.end(),
                                        [&](const Rule& each) { return each.applies(link); });
  LinkClass result = rule == rules.end() ? LinkClass{} : rule->linkClass;
  if (isSubordinate(link)) {
    result.family = LinkFamily::none;
  }
  return result;
}

LinkFamily familyOfPrefix(std::string_view prefix) {
  if (prefix == "en") return LinkFamily::adapter;
  return prefix == "pdp_ip" ? LinkFamily::cellular : LinkFamily::none;
}

}  // namespace lanternfold
