// The kernel's side of a reading of the Wi-Fi: what nl80211 and rtnetlink answer for one interface,
// and a client that reads it.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <net/if.h>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/System/LinuxWifiClient.h"
#include "Tests/PlatformLinux/ScriptedNetlink.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold::test {

inline Bytes answerMessage(const Bytes& payload) {
  return message(nl80211Type, payload, NLM_F_MULTI);
}

inline ScriptedAnswer answerOf(std::initializer_list<Bytes> payloads) {
  ScriptedAnswer answer;
  for (const Bytes& payload : payloads) answer.push_back({.bytes = answerMessage(payload)});
  answer.push_back({.bytes = doneMessage()});
  return answer;
}

inline ScriptedAnswer refusal(int errorNumber) { return {{.bytes = errorMessage(errorNumber)}}; }

inline ScriptedAnswer familyAnswer() {
  const Bytes payload = joined(
      {bytesOf(genlmsghdr{.cmd = CTRL_CMD_NEWFAMILY}), number16(CTRL_ATTR_FAMILY_ID, nl80211Type)});
  return {{.bytes = message(GENL_ID_CTRL, payload)}, {.bytes = errorMessage(0)}};
}

inline Bytes interfacePayload(int index, int type, std::string_view ssid) {
  return wifiPayload(NL80211_CMD_NEW_INTERFACE,
                     {number32(NL80211_ATTR_WIPHY, 1), number32(NL80211_ATTR_IFINDEX, index),
                      attribute(NL80211_ATTR_IFNAME, textBytes("wlan" + std::to_string(index))),
                      number32(NL80211_ATTR_IFTYPE, type), number32(NL80211_ATTR_WIPHY_FREQ, 5220),
                      number32(NL80211_ATTR_CHANNEL_WIDTH, NL80211_CHAN_WIDTH_80),
                      number32(NL80211_ATTR_WIPHY_TX_POWER_LEVEL, 2300),
                      ssid.empty() ? Bytes() : attribute(NL80211_ATTR_SSID, textOnly(ssid))});
}

inline Bytes cellPayload(bool isJoined, std::uint8_t last = 1) {
  return wifiPayload(
      NL80211_CMD_NEW_SCAN_RESULTS,
      {nested(NL80211_ATTR_BSS,
              {attribute(NL80211_BSS_BSSID, bytesOf(cellAddress(last))),
               number16(NL80211_BSS_CAPABILITY, 0x0011),
               attribute(NL80211_BSS_INFORMATION_ELEMENTS,
                         joined({element(0, textOnly("cafe")), element(48, rsnBody({8}))})),
               isJoined ? number32(NL80211_BSS_STATUS, NL80211_BSS_STATUS_ASSOCIATED) : Bytes()})});
}

inline Bytes stationPayload(int signal = -47, std::uint8_t last = 1) {
  return wifiPayload(
      NL80211_CMD_NEW_STATION,
      {attribute(NL80211_ATTR_MAC, bytesOf(cellAddress(last))),
       nested(NL80211_ATTR_STA_INFO,
              {number8(NL80211_STA_INFO_SIGNAL, signal),
               nested(NL80211_STA_INFO_TX_BITRATE, {number32(NL80211_RATE_INFO_BITRATE32, 5400),
                                                    number8(NL80211_RATE_INFO_HE_MCS, 7),
                                                    number8(NL80211_RATE_INFO_HE_NSS, 2)})})});
}

inline Bytes surveyPayload() {
  return wifiPayload(
      NL80211_CMD_NEW_SURVEY_RESULTS,
      {nested(NL80211_ATTR_SURVEY_INFO,
              {number32(NL80211_SURVEY_INFO_FREQUENCY, 5220),
               number8(NL80211_SURVEY_INFO_NOISE, -92), flag(NL80211_SURVEY_INFO_IN_USE)})});
}

inline ScriptedAnswer countryAnswer() {
  return {{.bytes = answerMessage(wifiPayload(
               NL80211_CMD_GET_REG, {attribute(NL80211_ATTR_REG_ALPHA2, textBytes("DE"))}))},
          {.bytes = errorMessage(0)}};
}

inline ScriptedAnswer linkAnswer(int index, unsigned flags) {
  ifinfomsg body{};
  body.ifi_index = index;
  body.ifi_flags = flags;
  const Bytes name = attribute(IFLA_IFNAME, textBytes("wlan" + std::to_string(index)));
  return {{.bytes = message(RTM_NEWLINK, joined({bytesOf(body), name}))},
          {.bytes = errorMessage(0)}};
}

class LinuxWifiClientTest : public testing::Test {
 protected:
  LinuxWifiClient client() {
    return LinuxWifiClient([this] { return mayTell_; }, {.genericNetlink = generic_.opener(),
                                                         .routeNetlink = route_.opener(),
                                                         .deviceTree = DeviceTree(tree_.path())});
  }

  /// The exchange for one joined interface, from the list of interfaces on.
  void answerAsJoined() {
    generic_.answer(familyAnswer());
    generic_.answer(answerOf({interfacePayload(5, NL80211_IFTYPE_STATION, "cafe")}));
    generic_.answer(answerOf({cellPayload(false), cellPayload(true)}));
    generic_.answer(answerOf({stationPayload()}));
    generic_.answer(answerOf({surveyPayload()}));
    generic_.answer(countryAnswer());
    route_.answer(linkAnswer(5, IFF_UP));
  }

  /// The same for one that has joined none.
  void answerAsNotJoined() {
    generic_.answer(familyAnswer());
    generic_.answer(answerOf({interfacePayload(5, NL80211_IFTYPE_STATION, "")}));
    generic_.answer(answerOf({cellPayload(false)}));
    generic_.answer(countryAnswer());
    route_.answer(linkAnswer(5, IFF_UP));
  }

  void addSwitch(std::string_view soft, std::string_view hard) const {
    const std::filesystem::path link = "class/net/wlan5";
    std::filesystem::create_directories(tree_ / link / "phy80211/rfkill0");
    tree_.write(link / "uevent", "DEVTYPE=wlan\nIFINDEX=5\n");
    tree_.write(link / "phy80211/rfkill0/soft", soft);
    tree_.write(link / "phy80211/rfkill0/hard", hard);
  }

  ScriptedNetlink generic_;
  ScriptedNetlink route_;
  TemporaryFolder tree_;
  bool mayTell_ = true;
};

}  // namespace lanternfold::test
