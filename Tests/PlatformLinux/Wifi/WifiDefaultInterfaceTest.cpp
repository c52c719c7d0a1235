#include "PlatformLinux/Wifi/WifiDefaultInterface.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

WifiInterfaceMessage interfaceOf(std::uint32_t index, std::uint32_t type, bool isJoined = false) {
  WifiInterfaceMessage interface;
  interface.index = index;
  interface.name = index == 0 ? "" : "wlan" + std::to_string(index);
  interface.interfaceType = type;
  if (isJoined) interface.ssid = textOnly("cafe");
  return interface;
}

std::vector<std::uint32_t> order(const std::vector<WifiInterfaceMessage>& interfaces) {
  std::vector<std::uint32_t> indexes;
  for (const auto& each : defaultInterfaceCandidates(interfaces)) indexes.push_back(each.index);
  return indexes;
}

TEST(WifiDefaultInterface, TheOneThatHasJoinedANetworkComesFirst) {
  EXPECT_EQ(order({interfaceOf(2, NL80211_IFTYPE_STATION), interfaceOf(7, NL80211_IFTYPE_STATION),
                   interfaceOf(9, NL80211_IFTYPE_STATION, true)}),
            (std::vector<std::uint32_t>{9, 2, 7}));
}

TEST(WifiDefaultInterface, AmongEqualsTheLowestIndexWins) {
  EXPECT_EQ(
      order({interfaceOf(9, NL80211_IFTYPE_STATION, true),
             interfaceOf(4, NL80211_IFTYPE_STATION, true), interfaceOf(3, NL80211_IFTYPE_STATION)}),
      (std::vector<std::uint32_t>{4, 9, 3}));
}

TEST(WifiDefaultInterface, ManagedOnesComeBeforeAdHocOnesAccessPointsAndMeshes) {
  EXPECT_EQ(order({interfaceOf(1, NL80211_IFTYPE_MESH_POINT), interfaceOf(2, NL80211_IFTYPE_AP),
                   interfaceOf(3, NL80211_IFTYPE_ADHOC), interfaceOf(4, NL80211_IFTYPE_STATION)}),
            (std::vector<std::uint32_t>{4, 3, 2, 1}));
}

TEST(WifiDefaultInterface, TheNetworkThatAnAccessPointOffersIsNoneThatItJoined) {
  EXPECT_EQ(
      order({interfaceOf(1, NL80211_IFTYPE_AP, true), interfaceOf(4, NL80211_IFTYPE_STATION)}),
      (std::vector<std::uint32_t>{4, 1}));
}

TEST(WifiDefaultInterface, OtherUsesOfARadioNeverAre) {
  for (const std::uint32_t type :
       {NL80211_IFTYPE_P2P_DEVICE, NL80211_IFTYPE_P2P_CLIENT, NL80211_IFTYPE_P2P_GO,
        NL80211_IFTYPE_MONITOR, NL80211_IFTYPE_NAN, NL80211_IFTYPE_OCB, NL80211_IFTYPE_WDS,
        NL80211_IFTYPE_AP_VLAN, NL80211_IFTYPE_UNSPECIFIED}) {
    EXPECT_TRUE(order({interfaceOf(1, type, true)}).empty()) << type;
  }
  EXPECT_TRUE(order({interfaceOf(0, NL80211_IFTYPE_STATION, true)}).empty());
  EXPECT_TRUE(order({}).empty());
}

}  // namespace
}  // namespace lanternfold::test
