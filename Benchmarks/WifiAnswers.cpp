#include "Benchmarks/WifiAnswers.h"

#include <string>

#include <linux/rtnetlink.h>

#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold {

namespace {

using namespace test;

// The kernel fills at most so much of a dump at a time.
constexpr std::size_t largestDatagram = 32 * 1024;

Bytes dataMessage(const Bytes& payload) {
  return message(replayedMessageType, payload, NLM_F_MULTI);
}

Bytes doneMessage() { return message(NLMSG_DONE, bytesOf(std::int32_t{0}), NLM_F_MULTI); }

Bytes acknowledgment() { return message(NLMSG_ERROR, bytesOf(nlmsgerr{})); }

/// The messages of a dump as the kernel packs them, the end mark in a datagram of its own.
ReplayedNetlink::Datagrams dumpOf(const std::vector<Bytes>& payloads) {
  ReplayedNetlink::Datagrams datagrams(1);
  for (const Bytes& payload : payloads) {
    const Bytes next = dataMessage(payload);
    if (datagrams.back().size() + next.size() > largestDatagram) datagrams.emplace_back();
    append(datagrams.back(), next);
  }
  datagrams.push_back(doneMessage());
  return datagrams;
}

ReplayedNetlink::Datagrams acknowledged(const Bytes& answer) { return {answer, acknowledgment()}; }

Bytes repeated(int type, std::size_t count, const Bytes& element) {
  Bytes elements;
  for (std::size_t place = 1; place <= count; ++place) {
    append(elements, attribute(static_cast<int>(place) | NLA_F_NESTED, element));
  }
  return attribute(type | NLA_F_NESTED, elements);
}

/// With the commands that a kernel lists, whom nobody reads.
Bytes familyPayload() {
  constexpr std::size_t commandCount = 140;
  const Bytes command = joined({number32(CTRL_ATTR_OP_ID, 5), number32(CTRL_ATTR_OP_FLAGS, 10)});
  const Bytes group = joined({number32(CTRL_ATTR_MCAST_GRP_ID, 6),
                              attribute(CTRL_ATTR_MCAST_GRP_NAME, textBytes("config"))});
  return joined({bytesOf(genlmsghdr{.cmd = CTRL_CMD_NEWFAMILY, .version = 2}),
                 attribute(CTRL_ATTR_FAMILY_NAME, textBytes("nl80211")),
                 number16(CTRL_ATTR_FAMILY_ID, replayedMessageType),
                 repeated(CTRL_ATTR_OPS, commandCount, command),
                 repeated(CTRL_ATTR_MCAST_GROUPS, 6, group)});
}

Bytes interfacePayload() {
  return wifiPayload(
      NL80211_CMD_NEW_INTERFACE,
      {number32(NL80211_ATTR_IFINDEX, replayedInterfaceIndex),
       attribute(NL80211_ATTR_IFNAME, textBytes("wlan0")), number32(NL80211_ATTR_WIPHY, 0),
       number32(NL80211_ATTR_IFTYPE, NL80211_IFTYPE_STATION),
       attribute(NL80211_ATTR_MAC, bytesOf(cellAddress(0xFE))),
       attribute(NL80211_ATTR_SSID, textOnly("network-of-ours")),
       number32(NL80211_ATTR_WIPHY_FREQ, 5220),
       number32(NL80211_ATTR_CHANNEL_WIDTH, NL80211_CHAN_WIDTH_80),
       number32(NL80211_ATTR_CENTER_FREQ1, 5210),
       number32(NL80211_ATTR_WIPHY_TX_POWER_LEVEL, 2000)});
}

/// As long as those of an ordinary access point.
Bytes elementsOfCell(std::size_t cell) {
  return joined({element(0, textOnly("network-" + std::to_string(cell))),
                 element(1, {0x8C, 0x12, 0x98, 0x24, 0xB0, 0x48, 0x60, 0x6C}), element(3, {44}),
                 element(7, Bytes(18)), element(48, rsnBody({2, 8})), element(45, Bytes(26)),
                 element(61, Bytes(22)), element(127, Bytes(10)), element(191, Bytes(12)),
                 element(192, Bytes(5)), extension(35, 30), extension(36, 8),
                 element(221, Bytes(24)), element(221, Bytes(30))});
}

Bytes cellPayload(std::size_t cell, bool isJoined) {
  const HardwareAddress address = {
      0x02, 0, 0, static_cast<std::uint8_t>(cell >> 8U), 0x01, static_cast<std::uint8_t>(cell)};
  const Bytes elements = elementsOfCell(cell);
  return wifiPayload(
      NL80211_CMD_NEW_SCAN_RESULTS,
      {number32(NL80211_ATTR_GENERATION, 77),
       number32(NL80211_ATTR_IFINDEX, replayedInterfaceIndex),
       nested(
           NL80211_ATTR_BSS,
           {attribute(NL80211_BSS_BSSID, bytesOf(address)),
            numberAttributeBytes(NL80211_BSS_TSF, std::uint64_t{1'234'567}),
            attribute(NL80211_BSS_INFORMATION_ELEMENTS, elements),
            numberAttributeBytes(NL80211_BSS_BEACON_TSF, std::uint64_t{1'234'567}),
            attribute(NL80211_BSS_BEACON_IES, elements), number16(NL80211_BSS_BEACON_INTERVAL, 100),
            number16(NL80211_BSS_CAPABILITY, 0x0511), number32(NL80211_BSS_FREQUENCY, 5220),
            number32(NL80211_BSS_SEEN_MS_AGO, 300), number32(NL80211_BSS_SIGNAL_MBM, -6100),
            isJoined ? number32(NL80211_BSS_STATUS, NL80211_BSS_STATUS_ASSOCIATED) : Bytes()})});
}

std::vector<Bytes> cellPayloads(std::size_t cellCount) {
  std::vector<Bytes> cells;
  for (std::size_t cell = 1; cell <= cellCount; ++cell) {
    cells.push_back(cellPayload(cell, cell == cellCount));
  }
  return cells;
}

Bytes stationPayload(std::size_t cell) {
  const HardwareAddress address = {
      0x02, 0, 0, static_cast<std::uint8_t>(cell >> 8U), 0x01, static_cast<std::uint8_t>(cell)};
  const auto rate = [](int type) {
    return nested(
        type, {number32(NL80211_RATE_INFO_BITRATE32, 5400), number8(NL80211_RATE_INFO_HE_MCS, 7),
               number8(NL80211_RATE_INFO_HE_NSS, 2), flag(NL80211_RATE_INFO_80_MHZ_WIDTH)});
  };
  return wifiPayload(
      NL80211_CMD_NEW_STATION,
      {number32(NL80211_ATTR_IFINDEX, replayedInterfaceIndex),
       attribute(NL80211_ATTR_MAC, bytesOf(address)),
       nested(NL80211_ATTR_STA_INFO,
              {number32(NL80211_STA_INFO_CONNECTED_TIME, 100),
               number8(NL80211_STA_INFO_SIGNAL, -47), number8(NL80211_STA_INFO_SIGNAL_AVG, -48),
               rate(NL80211_STA_INFO_TX_BITRATE), rate(NL80211_STA_INFO_RX_BITRATE),
               nested(NL80211_STA_INFO_TID_STATS, {attribute(1, Bytes(600))})})});
}

std::vector<Bytes> surveyPayloads() {
  std::vector<Bytes> channels;
  for (int channel = 36; channel <= 177; channel += 4) {
    channels.push_back(
        wifiPayload(NL80211_CMD_NEW_SURVEY_RESULTS,
                    {number32(NL80211_ATTR_IFINDEX, replayedInterfaceIndex),
                     nested(NL80211_ATTR_SURVEY_INFO,
                            {number32(NL80211_SURVEY_INFO_FREQUENCY, 5000 + 5 * channel),
                             number8(NL80211_SURVEY_INFO_NOISE, -92),
                             channel == 44 ? flag(NL80211_SURVEY_INFO_IN_USE) : Bytes()})}));
  }
  return channels;
}

Bytes countryPayload() {
  constexpr std::size_t ruleCount = 8;
  const Bytes rule = joined({number32(NL80211_ATTR_REG_RULE_FLAGS, 0),
                             number32(NL80211_ATTR_FREQ_RANGE_START, 5'150'000),
                             number32(NL80211_ATTR_FREQ_RANGE_END, 5'250'000),
                             number32(NL80211_ATTR_FREQ_RANGE_MAX_BW, 80'000),
                             number32(NL80211_ATTR_POWER_RULE_MAX_ANT_GAIN, 0),
                             number32(NL80211_ATTR_POWER_RULE_MAX_EIRP, 2'300)});
  return wifiPayload(NL80211_CMD_GET_REG, {attribute(NL80211_ATTR_REG_ALPHA2, textBytes("DE")),
                                           repeated(NL80211_ATTR_REG_RULES, ruleCount, rule)});
}

}  // namespace

std::map<ReplayedNetlink::Question, ReplayedNetlink::Datagrams> wifiAnswers(std::size_t cellCount) {
  return {
      {{GENL_ID_CTRL, CTRL_CMD_GETFAMILY}, acknowledged(message(GENL_ID_CTRL, familyPayload()))},
      {{replayedMessageType, NL80211_CMD_GET_INTERFACE}, dumpOf({interfacePayload()})},
      {{replayedMessageType, NL80211_CMD_GET_SCAN}, dumpOf(cellPayloads(cellCount))},
      {{replayedMessageType, NL80211_CMD_GET_STATION}, dumpOf({stationPayload(cellCount)})},
      {{replayedMessageType, NL80211_CMD_GET_SURVEY}, dumpOf(surveyPayloads())},
      {{replayedMessageType, NL80211_CMD_GET_REG},
       acknowledged(message(replayedMessageType, countryPayload()))}};
}

std::map<ReplayedNetlink::Question, ReplayedNetlink::Datagrams> linkAnswers() {
  ifinfomsg body{};
  body.ifi_index = static_cast<int>(replayedInterfaceIndex);
  body.ifi_flags = 0x11043;
  const Bytes link = message(
      RTM_NEWLINK, joined({bytesOf(body), attribute(IFLA_IFNAME, textBytes("wlan0")),
                           number32(IFLA_MTU, 1500), attribute(IFLA_STATS64, Bytes(200)),
                           attribute(IFLA_STATS, Bytes(96)), attribute(IFLA_AF_SPEC, Bytes(700))}));
  return {{{RTM_GETLINK, std::uint8_t{0}}, acknowledged(link)}};
}

}  // namespace lanternfold
