#include <linux/genetlink.h>
#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/Netlink/WirelessInterfaceMessage.h"
#include "Tests/PlatformLinux/Path/EventBytes.h"

namespace lanternfold {
namespace {

constexpr std::uint16_t messageType = 0x1C;

EventBytes interfaceAnswer(std::uint32_t interfaceType) {
  return EventBytes(messageType, genlmsghdr{.cmd = NL80211_CMD_NEW_INTERFACE, .version = 1})
      .value(NL80211_ATTR_WIPHY, std::uint32_t{0})
      .value(NL80211_ATTR_IFINDEX, std::uint32_t{3})
      .text(NL80211_ATTR_IFNAME, "wlan0")
      .value(NL80211_ATTR_IFTYPE, interfaceType);
}

TEST(WirelessInterfaceMessage, OnlyWhatCarriesTheMachinesTrafficIsANetwork) {
  const std::map<std::uint32_t, WirelessRole> roles = {
      {NL80211_IFTYPE_STATION, WirelessRole::network},
      {NL80211_IFTYPE_AP, WirelessRole::network},
      {NL80211_IFTYPE_ADHOC, WirelessRole::network},
      {NL80211_IFTYPE_MESH_POINT, WirelessRole::network},
      {NL80211_IFTYPE_MONITOR, WirelessRole::auxiliary},
      {NL80211_IFTYPE_AP_VLAN, WirelessRole::auxiliary},
      {NL80211_IFTYPE_P2P_CLIENT, WirelessRole::auxiliary},
      {NL80211_IFTYPE_P2P_GO, WirelessRole::auxiliary},
      {NL80211_IFTYPE_P2P_DEVICE, WirelessRole::auxiliary},
      {NL80211_IFTYPE_OCB, WirelessRole::auxiliary},
      {99, WirelessRole::auxiliary}};
  for (const auto& [type, role] : roles) {
    EXPECT_EQ(decodeWirelessInterface(interfaceAnswer(type).message()),
              (WirelessInterfaceMessage{.index = 3, .role = role}))
        << type;
  }
}

TEST(WirelessInterfaceMessage, AUseOfTheRadioWithoutAnInterfaceHasNoIndex) {
  auto answer = EventBytes(messageType, genlmsghdr{.cmd = NL80211_CMD_NEW_INTERFACE})
                    .value(NL80211_ATTR_IFTYPE, std::uint32_t{NL80211_IFTYPE_P2P_DEVICE});
  const auto interface = decodeWirelessInterface(answer.message());
  ASSERT_TRUE(interface);
  EXPECT_EQ(interface->index, 0U);
}

TEST(WirelessInterfaceMessage, TellsWhyAnAnswerIsNotUnderstood) {
  const auto nothing = decodeWirelessInterface({.type = messageType});
  ASSERT_FALSE(nothing);
  EXPECT_EQ(nothing.error(), (DecodeError{DecodeProblem::truncated, "genlmsghdr"}));
  const EventBytes empty(messageType, genlmsghdr{});
  const auto withoutType = decodeWirelessInterface(empty.message());
  ASSERT_FALSE(withoutType);
  EXPECT_EQ(withoutType.error(), (DecodeError{DecodeProblem::missing, "NL80211_ATTR_IFTYPE"}));
  auto shortIndex =
      EventBytes(messageType, genlmsghdr{}).value(NL80211_ATTR_IFINDEX, std::uint16_t{3});
  const auto withShortIndex = decodeWirelessInterface(shortIndex.message());
  ASSERT_FALSE(withShortIndex);
  EXPECT_EQ(withShortIndex.error(),
            (DecodeError{DecodeProblem::wrongSize, "NL80211_ATTR_IFINDEX"}));
}

TEST(WirelessInterfaceMessage, CutAnywhereItIsAnErrorOrAShorterAnswerButNeverAnotherRole) {
  const EventBytes whole = interfaceAnswer(NL80211_IFTYPE_STATION);
  const auto payload = whole.message().payload;
  for (std::size_t size = 0; size < payload.size(); ++size) {
    const auto cut = decodeWirelessInterface({.type = messageType, .payload = payload.first(size)});
    EXPECT_FALSE(cut) << size;
  }
}

}  // namespace
}  // namespace lanternfold
