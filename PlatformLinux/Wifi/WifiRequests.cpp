#include "PlatformLinux/Wifi/WifiRequests.h"

#include <linux/netlink.h>
#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/GenericNetlink.h"

namespace lanternfold {

namespace {

NetlinkRequest dumpOfInterface(std::uint16_t messageType, std::uint8_t command,
                               std::uint32_t interfaceIndex) {
  RequestBuilder request = genericRequest(messageType, NLM_F_DUMP, command);
  request.addNumber(NL80211_ATTR_IFINDEX, interfaceIndex);
  return request.finished();
}

}  // namespace

NetlinkRequest wifiStationDumpRequest(std::uint16_t messageType, std::uint32_t interfaceIndex) {
  return dumpOfInterface(messageType, NL80211_CMD_GET_STATION, interfaceIndex);
}

NetlinkRequest wifiScanDumpRequest(std::uint16_t messageType, std::uint32_t interfaceIndex) {
  return dumpOfInterface(messageType, NL80211_CMD_GET_SCAN, interfaceIndex);
}

NetlinkRequest wifiSurveyDumpRequest(std::uint16_t messageType, std::uint32_t interfaceIndex) {
  return dumpOfInterface(messageType, NL80211_CMD_GET_SURVEY, interfaceIndex);
}

NetlinkRequest wifiRegulatoryRequest(std::uint16_t messageType, std::uint32_t radioIndex) {
  RequestBuilder request = genericRequest(messageType, NLM_F_ACK, NL80211_CMD_GET_REG);
  request.addNumber(NL80211_ATTR_WIPHY, radioIndex);
  return request.finished();
}

}  // namespace lanternfold
