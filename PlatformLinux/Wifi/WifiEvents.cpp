#include "PlatformLinux/Wifi/WifiEvents.h"

#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/GenericNetlink.h"

namespace lanternfold {

namespace {

/// NL80211_CMD_LINKS_REMOVED, of Linux 6.5: an access point has taken links of a multi-link
/// connection away.
constexpr int linksRemoved = NL80211_CMD_SET_HW_TIMESTAMP + 1;

}  // namespace

std::vector<std::string> wifiStateGroups() {
  return {NL80211_MULTICAST_GROUP_CONFIG, NL80211_MULTICAST_GROUP_MLME,
          NL80211_MULTICAST_GROUP_REG};
}

std::vector<std::string> wifiCellGroups() {
  return {NL80211_MULTICAST_GROUP_CONFIG, NL80211_MULTICAST_GROUP_MLME,
          NL80211_MULTICAST_GROUP_SCAN};
}

WifiNews newsOfWifiEvent(const NetlinkMessage& message) {
  const auto command = genericCommand(message);
  if (!command) return WifiNews::state;
  switch (*command) {
    // A network is joined, changed for another cell of it, lost or left.
    case NL80211_CMD_CONNECT:
    case NL80211_CMD_ROAM:
    case NL80211_CMD_DISCONNECT:
    case NL80211_CMD_ASSOCIATE:
    case NL80211_CMD_DEAUTHENTICATE:
    case NL80211_CMD_DISASSOCIATE:
    case NL80211_CMD_JOIN_IBSS:
    case linksRemoved:
    // It is on another channel, or of another width.
    case NL80211_CMD_CH_SWITCH_NOTIFY:
    // An interface has come, gone or become one of another kind.
    case NL80211_CMD_NEW_INTERFACE:
    case NL80211_CMD_SET_INTERFACE:
    case NL80211_CMD_DEL_INTERFACE:
    // An access point of this machine's own: its network is that of the interface.
    case NL80211_CMD_START_AP:
    case NL80211_CMD_STOP_AP:
    // The rules of another country hold, for all radios or for one.
    case NL80211_CMD_REG_CHANGE:
    case NL80211_CMD_WIPHY_REG_CHANGE:
      return WifiNews::state;
    // A scan that was given up has seen cells as well.
    case NL80211_CMD_NEW_SCAN_RESULTS:
    case NL80211_CMD_SCAN_ABORTED:
    case NL80211_CMD_SCHED_SCAN_RESULTS:
      return WifiNews::cells;
    default:
      return WifiNews::none;
  }
}

}  // namespace lanternfold
