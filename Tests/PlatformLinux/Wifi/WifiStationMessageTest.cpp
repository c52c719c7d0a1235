#include "PlatformLinux/Wifi/WifiStationMessage.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

Bytes stationInfo() {
  return nested(
      NL80211_ATTR_STA_INFO,
      {number32(NL80211_STA_INFO_INACTIVE_TIME, 12), number8(NL80211_STA_INFO_SIGNAL, -47),
       number8(NL80211_STA_INFO_SIGNAL_AVG, -49),
       nested(
           NL80211_STA_INFO_TX_BITRATE,
           {number32(NL80211_RATE_INFO_BITRATE32, 8667), number16(NL80211_RATE_INFO_BITRATE, 8667),
            number8(NL80211_RATE_INFO_VHT_MCS, 9), number8(NL80211_RATE_INFO_VHT_NSS, 2),
            flag(NL80211_RATE_INFO_80_MHZ_WIDTH), flag(NL80211_RATE_INFO_SHORT_GI)}),
       nested(NL80211_STA_INFO_RX_BITRATE, {number16(NL80211_RATE_INFO_BITRATE, 60)}),
       number32(NL80211_STA_INFO_EXPECTED_THROUGHPUT, 321'000),
       number32(NL80211_STA_INFO_CONNECTED_TIME, 77)});
}

Bytes stationAnswer(std::initializer_list<Bytes> more) {
  return wifiPayload(NL80211_CMD_NEW_STATION,
                     {number32(NL80211_ATTR_IFINDEX, 5),
                      attribute(NL80211_ATTR_MAC, bytesOf(cellAddress(1))), joined(more)});
}

auto decoded(const Bytes& payload) {
  return decodeWifiStation(payloadMessage(nl80211Type, payload));
}

TEST(WifiStationMessage, TellsSignalRatesAndTimes) {
  const WifiRate transmit{.bitrate = 8667,
                          .generation = WifiGeneration::vht,
                          .modulation = 9,
                          .streams = 2,
                          .widthMegahertz = 80,
                          .guardIntervalNanoseconds = 400};
  const WifiRate receive{.bitrate = 60};
  EXPECT_EQ(decoded(stationAnswer({stationInfo()})).value(),
            (WifiStationMessage{.address = cellAddress(1),
                                .figures = {.signalDbm = std::int8_t{-47},
                                            .signalAverageDbm = std::int8_t{-49},
                                            .transmitRate = transmit,
                                            .receiveRate = receive,
                                            .expectedThroughputKilobits = 321'000,
                                            .connectedSeconds = 77},
                                .links = {}}));
}

TEST(WifiStationMessage, ADriverThatKnowsNothingLeavesEverythingAbsent) {
  const WifiStationMessage nothing{.address = cellAddress(1), .figures = {}, .links = {}};
  EXPECT_EQ(decoded(stationAnswer({})).value(), nothing);
  EXPECT_EQ(decoded(stationAnswer({nested(NL80211_ATTR_STA_INFO, {})})).value(), nothing);
}

TEST(WifiStationMessage, TellsTheLinksApart) {
  const Bytes links =
      nested(NL80211_ATTR_MLO_LINKS,
             {nested(1, {number8(NL80211_ATTR_MLO_LINK_ID, 0), stationInfo()}),
              nested(2, {number8(NL80211_ATTR_MLO_LINK_ID, 1),
                         nested(NL80211_ATTR_STA_INFO, {number8(NL80211_STA_INFO_SIGNAL, -70)})})});
  const auto station = decoded(stationAnswer({links})).value();
  ASSERT_EQ(station.links.size(), 2U);
  EXPECT_EQ(station.links[0].figures.signalDbm, std::int8_t{-47});
  EXPECT_EQ(station.links[1].linkId, 1);
  EXPECT_EQ(station.links[1].figures.signalDbm, std::int8_t{-70});
}

TEST(WifiStationMessage, WhatIsWrongIsNamed) {
  using enum DecodeProblem;
  const auto withInfo = [](const Bytes& bytes) {
    return stationAnswer({nested(NL80211_ATTR_STA_INFO, {bytes})});
  };
  const std::pair<Bytes, DecodeError> cases[] = {
      {{}, {truncated, "genlmsghdr"}},
      {wifiPayload(NL80211_CMD_NEW_STATION, {stationInfo()}), {missing, "NL80211_ATTR_MAC"}},
      {stationAnswer({stationInfo(), stationInfo()}), {duplicate, "NL80211_ATTR_STA_INFO"}},
      {withInfo(number32(NL80211_STA_INFO_SIGNAL, 1)), {wrongSize, "NL80211_STA_INFO_SIGNAL"}},
      {withInfo(nested(NL80211_STA_INFO_TX_BITRATE, {flag(NL80211_RATE_INFO_BITRATE32)})),
       {wrongSize, "NL80211_RATE_INFO_BITRATE32"}},
      {stationAnswer(
           {nested(NL80211_ATTR_MLO_LINKS, {nested(1, {number8(NL80211_ATTR_MLO_LINK_ID, 99)})})}),
       {badValue, "NL80211_ATTR_MLO_LINK_ID"}},
  };
  for (const auto& [payload, error] : cases) {
    const auto station = decoded(payload);
    ASSERT_FALSE(station) << description(error);
    EXPECT_EQ(station.error(), error) << description(station.error());
  }
}

TEST(WifiStationMessage, CutAnywhereItIsAnErrorOrAShorterAnswer) {
  const Bytes payload = stationAnswer({stationInfo()});
  const auto whole = decoded(payload).value();
  forEveryCut(payload, [&](const Bytes& bytes) {
    const auto cut = decoded(bytes);
    EXPECT_TRUE(!cut || *cut != whole) << bytes.size();
  });
}

}  // namespace
}  // namespace lanternfold::test
