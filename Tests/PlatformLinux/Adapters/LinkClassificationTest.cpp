#include <linux/if_arp.h>

#include "PlatformLinux/Adapters/LinkClassification.h"

namespace lanternfold {
namespace {

/// A link of a driver, standing on a device.
LinkFacts deviceLink(std::string name, std::uint16_t hardwareType = ARPHRD_ETHER) {
  return {.name = std::move(name), .index = 2, .hardwareType = hardwareType, .hasDevice = true};
}

/// A link that was made in software.
LinkFacts softwareLink(std::string name, std::string kind,
                       std::uint16_t hardwareType = ARPHRD_ETHER) {
  return {
      .name = std::move(name), .index = 2, .hardwareType = hardwareType, .kind = std::move(kind)};
}

template <typename Change>
LinkFacts with(LinkFacts link, Change change) {
  change(link);
  return link;
}

LinkFacts below(LinkFacts link, std::string masterKind) {
  return with(std::move(link), [&](LinkFacts& facts) {
    facts.hasMaster = true;
    facts.masterKind = masterKind;
  });
}

LinkFacts withDeviceType(LinkFacts link, std::string deviceType) {
  return with(std::move(link), [&](LinkFacts& facts) { facts.deviceType = deviceType; });
}

LinkFacts wifi(std::string name, WirelessRole role) {
  return with(deviceLink(std::move(name)), [&](LinkFacts& facts) {
    facts.deviceType = "wlan";
    facts.wirelessRole = role;
  });
}

std::string text(const LinkClass& linkClass) {
  static constexpr std::array families = {"-", "adapter", "cellular"};
  static constexpr std::array pathTypes = {"wifi", "wired", "cellular", "loopback", "other"};
  static constexpr std::array configuredTypes = {"ieee80211", "ethernet", "bluetooth", "other"};
  return std::string(families[static_cast<std::size_t>(linkClass.family)]) + " " +
         pathTypes[static_cast<std::size_t>(linkClass.pathType)] + " " +
         (linkClass.configuredType
              ? configuredTypes[static_cast<std::size_t>(*linkClass.configuredType)]
              : "-");
}

struct Case {
  std::string title;
  LinkFacts link;
  /// Family, path type, type in the adapter list.
  std::string expected;
};

const std::vector<Case>& cases() {
  static const std::vector<Case> all = {
      {"a PCI Ethernet card", deviceLink("enp3s0"), "adapter wired ethernet"},
      {"a card under the kernel's own name", deviceLink("eth0"), "adapter wired ethernet"},
      {"a card that somebody renamed", deviceLink("lan"), "adapter wired ethernet"},
      {"a port of a router's switch", with(deviceLink("lan1"), [](auto& l) { l.kind = "dsa"; }),
       "adapter wired ethernet"},
      {"a card that is a port of a bridge", below(deviceLink("eth1"), "bridge"),
       "adapter wired ethernet"},
      {"a card below a bond", below(deviceLink("eth1"), "bond"), "- wired ethernet"},
      {"a card below a team", below(deviceLink("eth1"), "team"), "- wired ethernet"},
      {"a passed-through card behind its virtual front", below(deviceLink("eth1"), ""),
       "- wired ethernet"},
      {"a bond", softwareLink("bond0", "bond"), "adapter wired other"},
      {"a team", softwareLink("team0", "team"), "adapter wired other"},
      {"a Wi-Fi card", wifi("wlp2s0", WirelessRole::network), "adapter wifi ieee80211"},
      {"a Wi-Fi card of which only the device type is known",
       withDeviceType(deviceLink("wlan0"), "wlan"), "adapter wifi ieee80211"},
      {"a Wi-Fi monitor interface", wifi("mon0", WirelessRole::auxiliary), "- other -"},
      {"a Wi-Fi monitor interface known by its link layer",
       deviceLink("mon0", ARPHRD_IEEE80211_RADIOTAP), "- other -"},
      {"a Wi-Fi Direct interface", wifi("p2p-wlan0-0", WirelessRole::auxiliary), "- other -"},
      {"the simulated radio's tap", softwareLink("hwsim0", "", ARPHRD_IEEE80211_RADIOTAP),
       "- other -"},
      {"a modem", withDeviceType(deviceLink("wwan0", ARPHRD_NONE), "wwan"),
       "cellular cellular other"},
      {"a modem that frames as Ethernet", withDeviceType(deviceLink("wwp0s20u4"), "wwan"),
       "cellular cellular other"},
      {"a modem known by its driver",
       with(deviceLink("eth1"), [](auto& l) { l.driver = "qmi_wwan"; }), "cellular cellular other"},
      {"a modem known by its bare IP link layer", deviceLink("rmnet_usb0", ARPHRD_RAWIP),
       "cellular cellular other"},
      {"a modem's further channel", softwareLink("wwan0.2", "wwan", ARPHRD_RAWIP),
       "cellular cellular other"},
      {"a Bluetooth network", withDeviceType(deviceLink("bnep0"), "bluetooth"),
       "adapter other bluetooth"},
      {"loopback",
       {.name = "lo", .index = 1, .hardwareType = ARPHRD_LOOPBACK, .isLoopback = true},
       "- loopback -"},
      {"a container's veth", softwareLink("eth0", "veth"), "adapter wired ethernet"},
      {"a container's macvlan", softwareLink("eth0", "macvlan"), "adapter wired ethernet"},
      {"a container's ipvlan", softwareLink("eth12", "ipvlan"), "adapter wired ethernet"},
      {"a rootless container's tap", softwareLink("eth0", "tun"), "adapter wired ethernet"},
      {"a veth with a name of the literal family", softwareLink("en0", "veth"),
       "adapter wired ethernet"},
      {"a veth of another name", softwareLink("veth1a2b3c4", "veth"), "- other -"},
      {"a veth that only begins like one", softwareLink("eth0peer", "veth"), "- other -"},
      {"a veth named eth without a number", softwareLink("eth", "veth"), "- other -"},
      {"a tap of another name", softwareLink("tap0", "tun"), "- other -"},
      {"a tunnel named like a card", softwareLink("eth0", "tun", ARPHRD_NONE), "- other -"},
      {"a container engine's bridge", softwareLink("docker0", "bridge"), "- other -"},
      {"a bridge named like a card", softwareLink("eth0", "bridge"), "- other -"},
      {"an intermediate functional block", softwareLink("ifb0", "ifb"), "- other -"},
      {"a dummy", softwareLink("dummy0", "dummy"), "- other -"},
      {"a VLAN", softwareLink("eth0.5", "vlan"), "- other -"},
      {"a vxlan", softwareLink("vxlan5", "vxlan"), "- other -"},
      {"a WireGuard tunnel", softwareLink("wg0", "wireguard", ARPHRD_NONE), "- other -"},
      {"a VPN's tun", softwareLink("tun0", "tun", ARPHRD_NONE), "- other -"},
      {"an IPv6-in-IPv4 tunnel", softwareLink("sit0", "sit", ARPHRD_SIT), "- other -"},
      {"a dial-up link", softwareLink("ppp0", "ppp", ARPHRD_PPP), "- other -"},
      {"an InfiniBand port", deviceLink("ib0", ARPHRD_INFINIBAND), "- other -"},
      {"a CAN bus", deviceLink("can0", ARPHRD_CAN), "- other -"},
      {"a link of no kind and no device", softwareLink("eth0", ""), "- other -"},
  };
  return all;
}

TEST(LinkClassification, EveryKindOfLinkHasItsFamilyAndTypes) {
  for (const Case& each : cases()) {
    EXPECT_EQ(text(classifyLink(each.link)), each.expected) << each.title;
  }
}

TEST(LinkClassification, OnlyTwoPrefixesStandForAFamily) {
  EXPECT_EQ(familyOfPrefix("en"), LinkFamily::adapter);
  EXPECT_EQ(familyOfPrefix("pdp_ip"), LinkFamily::cellular);
  EXPECT_EQ(familyOfPrefix("e"), LinkFamily::none);
  EXPECT_EQ(familyOfPrefix("en0"), LinkFamily::none);
  EXPECT_EQ(familyOfPrefix(""), LinkFamily::none);
}

}  // namespace
}  // namespace lanternfold
