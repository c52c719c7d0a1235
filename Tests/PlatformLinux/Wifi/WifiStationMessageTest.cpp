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
  const Bytes address = attribute(NL80211_ATTR_MAC, bytesOf(cellAddress(1)));
  const std::pair<Bytes, DecodeError> cases[] = {
      {{}, {truncated, "genlmsghdr"}},
      {wifiPayload(NL80211_CMD_NEW_STATION, {stationInfo()}), {missing, "NL80211_ATTR_MAC"}},
      {stationAnswer({address}), {duplicate, "NL80211_ATTR_MAC"}},
      {wifiPayload(NL80211_CMD_NEW_STATION, {attribute(NL80211_ATTR_MAC, Bytes(5))}),
       {wrongSize, "NL80211_ATTR_MAC"}},
      {stationAnswer({{9, 0, 1, 0}}), {truncated, "nlattr"}},
  };
  for (const auto& [payload, error] : cases) {
    const auto station = decoded(payload);
    ASSERT_FALSE(station) << description(error);
    EXPECT_EQ(station.error(), error) << description(station.error());
  }
}

TEST(WifiStationMessage, ABadFigureDoesNotTakeTheOthersWithIt) {
  const Bytes signal = number8(NL80211_STA_INFO_SIGNAL, -47);
  const Bytes badFigures[] = {
      number32(NL80211_STA_INFO_SIGNAL_AVG, -49),
      joined({number8(NL80211_STA_INFO_SIGNAL_AVG, -49), number8(NL80211_STA_INFO_SIGNAL_AVG, 1)}),
      number8(NL80211_STA_INFO_CONNECTED_TIME, 1),
      number8(NL80211_STA_INFO_EXPECTED_THROUGHPUT, 1),
      attribute(NL80211_STA_INFO_RX_BITRATE, {1, 2, 3}),
      nested(NL80211_STA_INFO_TX_BITRATE, {flag(NL80211_RATE_INFO_BITRATE32)}),
  };
  WifiStationMessage expected{.address = cellAddress(1), .figures = {}, .links = {}};
  expected.figures.signalDbm = std::int8_t{-47};
  for (const Bytes& bad : badFigures) {
    EXPECT_EQ(decoded(stationAnswer({nested(NL80211_ATTR_STA_INFO, {bad, signal})})).value(),
              expected);
  }
}

/// Else a broken index would make it a rate of the oldest generation.
TEST(WifiStationMessage, ARateIsThereAsAWholeOrNotAtAll) {
  const Bytes rate = nested(NL80211_STA_INFO_TX_BITRATE, {number32(NL80211_RATE_INFO_BITRATE32, 9),
                                                          number16(NL80211_RATE_INFO_HE_MCS, 7)});
  EXPECT_EQ(decoded(stationAnswer({nested(NL80211_ATTR_STA_INFO, {rate})}))->figures,
            WifiStationFigures{});
}

TEST(WifiStationMessage, FiguresThatAreNoneLeaveThePeer) {
  const WifiStationMessage nothing{.address = cellAddress(1), .figures = {}, .links = {}};
  for (const Bytes& bad :
       {attribute(NL80211_ATTR_STA_INFO, {1, 2, 3}), joined({stationInfo(), stationInfo()}),
        attribute(NL80211_ATTR_MLO_LINKS, {1, 2, 3})}) {
    EXPECT_EQ(decoded(stationAnswer({bad})).value(), nothing);
  }
}

TEST(WifiStationMessage, ABadLinkDoesNotTakeTheOthersWithIt) {
  const Bytes good = nested(2, {number8(NL80211_ATTR_MLO_LINK_ID, 1)});
  for (const Bytes& bad :
       {nested(1, {number8(NL80211_ATTR_MLO_LINK_ID, 99)}), nested(1, {}),
        nested(1, {number16(NL80211_ATTR_MLO_LINK_ID, 0)}), attribute(1, {1, 2, 3})}) {
    const auto station =
        decoded(stationAnswer({stationInfo(), nested(NL80211_ATTR_MLO_LINKS, {bad, good})}));
    ASSERT_TRUE(station);
    EXPECT_EQ(station->figures.signalDbm, std::int8_t{-47});
    EXPECT_EQ(station->links, (std::vector{WifiStationLink{.linkId = 1, .figures = {}}}));
  }
}

TEST(WifiStationMessage, NestedTooDeepIsNotFollowed) {
  Bytes deep;
  for (int level = 0; level < 1000; ++level) deep = attribute(NL80211_ATTR_MLO_LINKS, deep);
  const Bytes inLink =
      nested(NL80211_ATTR_MLO_LINKS, {nested(1, {number8(NL80211_ATTR_MLO_LINK_ID, 0), deep})});
  EXPECT_EQ(decoded(stationAnswer({inLink}))->links.size(), 1U);
  EXPECT_TRUE(decoded(stationAnswer({deep}))->links.empty());
  EXPECT_EQ(decoded(stationAnswer({nested(NL80211_ATTR_STA_INFO, {deep})}))->figures,
            WifiStationFigures{});
}

TEST(WifiStationMessage, ACutAnswerTellsNoFigureOtherwise) {
  const auto figures = decoded(stationAnswer({stationInfo()}))->figures;
  const Bytes links = nested(NL80211_ATTR_MLO_LINKS,
                             {nested(1, {number8(NL80211_ATTR_MLO_LINK_ID, 0), stationInfo()}),
                              nested(2, {number8(NL80211_ATTR_MLO_LINK_ID, 1), stationInfo()})});
  using Attribute = MeaningfulAttribute<WifiStationMessage>;
  const std::vector<Attribute> attributes = {
      {attribute(NL80211_ATTR_MAC, bytesOf(cellAddress(1))),
       [](auto& station) { station.address = cellAddress(1); }},
      {number32(NL80211_ATTR_IFINDEX, 5)},
      {stationInfo(), [&](auto& station) { station.figures = figures; }},
      {links,
       [&](auto& station) {
         station.links = {{.linkId = 0, .figures = figures}, {.linkId = 1, .figures = figures}};
       }},
  };
  ASSERT_EQ(figures.connectedSeconds, 77U);
  expectCutsTellWholeAttributes(NL80211_CMD_NEW_STATION, attributes, decoded);
}

}  // namespace
}  // namespace lanternfold::test
