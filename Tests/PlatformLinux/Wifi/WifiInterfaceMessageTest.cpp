#include "PlatformLinux/Wifi/WifiInterfaceMessage.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

Bytes stationAnswer() {
  return wifiPayload(
      NL80211_CMD_NEW_INTERFACE,
      {number32(NL80211_ATTR_WIPHY, 1), number32(NL80211_ATTR_IFTYPE, 2),
       number32(NL80211_ATTR_IFINDEX, 5), attribute(NL80211_ATTR_IFNAME, textBytes("wlan0")),
       attribute(NL80211_ATTR_MAC, bytesOf(cellAddress(9))),
       number32(NL80211_ATTR_WIPHY_FREQ, 5220),
       number32(NL80211_ATTR_CHANNEL_WIDTH, NL80211_CHAN_WIDTH_80),
       number32(NL80211_ATTR_CENTER_FREQ1, 5210), number32(NL80211_ATTR_WIPHY_TX_POWER_LEVEL, 2000),
       attribute(NL80211_ATTR_SSID, textOnly("cafe"))});
}

Bytes linkElement(int number, std::initializer_list<Bytes> attributes) {
  return nested(number, attributes);
}

Bytes multiLinkAnswer(const Bytes& links) {
  return wifiPayload(NL80211_CMD_NEW_INTERFACE, {number32(NL80211_ATTR_IFTYPE, 2), links});
}

TEST(WifiInterfaceMessage, TellsEverythingOfAStation) {
  const Bytes payload = stationAnswer();
  const auto interface = decodeWifiInterface(payloadMessage(nl80211Type, payload)).value();
  EXPECT_EQ(interface, (WifiInterfaceMessage{.index = 5,
                                             .name = "wlan0",
                                             .radioIndex = 1,
                                             .interfaceType = NL80211_IFTYPE_STATION,
                                             .address = cellAddress(9),
                                             .ssid = textOnly("cafe"),
                                             .channel = {.frequencyMegahertz = 5220,
                                                         .width = NL80211_CHAN_WIDTH_80,
                                                         .center1Megahertz = 5210,
                                                         .center2Megahertz = std::nullopt},
                                             .transmitPowerMillibels = 2000,
                                             .links = {}}));
}

TEST(WifiInterfaceMessage, WhatIsNotThereIsAbsent) {
  const Bytes payload = wifiPayload(NL80211_CMD_NEW_INTERFACE,
                                    {number32(NL80211_ATTR_IFTYPE, NL80211_IFTYPE_P2P_DEVICE)});
  WifiInterfaceMessage expected;
  expected.interfaceType = NL80211_IFTYPE_P2P_DEVICE;
  EXPECT_EQ(decodeWifiInterface(payloadMessage(nl80211Type, payload)).value(), expected);
}

TEST(WifiInterfaceMessage, AnEmptyNetworkNameIsNone) {
  const Bytes payload = wifiPayload(NL80211_CMD_NEW_INTERFACE, {number32(NL80211_ATTR_IFTYPE, 2),
                                                                attribute(NL80211_ATTR_SSID, {})});
  EXPECT_EQ(decodeWifiInterface(payloadMessage(nl80211Type, payload))->ssid, std::nullopt);
}

TEST(WifiInterfaceMessage, ATransmitPowerBelowZeroIsSigned) {
  const Bytes payload = wifiPayload(
      NL80211_CMD_NEW_INTERFACE,
      {number32(NL80211_ATTR_IFTYPE, 2), number32(NL80211_ATTR_WIPHY_TX_POWER_LEVEL, -300)});
  EXPECT_EQ(decodeWifiInterface(payloadMessage(nl80211Type, payload))->transmitPowerMillibels,
            -300);
}

TEST(WifiInterfaceMessage, TellsTheLinksOfAMultiLinkInterfaceByAscendingNumbers) {
  const Bytes payload = multiLinkAnswer(
      nested(NL80211_ATTR_MLO_LINKS,
             {linkElement(
                  3, {number8(NL80211_ATTR_MLO_LINK_ID, 2), number32(NL80211_ATTR_WIPHY_FREQ, 6135),
                      number32(NL80211_ATTR_CHANNEL_WIDTH, NL80211_CHAN_WIDTH_320),
                      number32(NL80211_ATTR_WIPHY_TX_POWER_LEVEL, 1500)}),
              linkElement(1, {number8(NL80211_ATTR_MLO_LINK_ID, 0),
                              attribute(NL80211_ATTR_MAC, bytesOf(cellAddress(1))),
                              number32(NL80211_ATTR_WIPHY_FREQ, 2437)})}));
  const auto links = decodeWifiInterface(payloadMessage(nl80211Type, payload))->links;
  ASSERT_EQ(links.size(), 2U);
  EXPECT_EQ(links[0].linkId, 0);
  EXPECT_EQ(links[0].channel.frequencyMegahertz, 2437U);
  EXPECT_EQ(links[1].linkId, 2);
  EXPECT_EQ(links[1].channel.width, std::uint32_t{NL80211_CHAN_WIDTH_320});
  EXPECT_EQ(links[1].transmitPowerMillibels, 1500);
}

TEST(WifiInterfaceMessage, WhatIsWrongIsNamed) {
  using enum DecodeProblem;
  const Bytes type = number32(NL80211_ATTR_IFTYPE, 2);
  const auto answer = [&](const Bytes& more) {
    return wifiPayload(NL80211_CMD_NEW_INTERFACE, {type, more});
  };
  const std::pair<Bytes, DecodeError> cases[] = {
      {{}, {truncated, "genlmsghdr"}},
      {wifiPayload(NL80211_CMD_NEW_INTERFACE, {}), {missing, "NL80211_ATTR_IFTYPE"}},
      {answer(type), {duplicate, "NL80211_ATTR_IFTYPE"}},
      {answer(number16(NL80211_ATTR_IFINDEX, 3)), {wrongSize, "NL80211_ATTR_IFINDEX"}},
      {answer(number16(NL80211_ATTR_WIPHY, 3)), {wrongSize, "NL80211_ATTR_WIPHY"}},
      {answer(attribute(NL80211_ATTR_IFNAME, textOnly("wlan0"))),
       {badValue, "NL80211_ATTR_IFNAME"}},
      {answer({9, 0, 1, 0}), {truncated, "nlattr"}},
  };
  for (const auto& [payload, error] : cases) {
    const auto interface = decodeWifiInterface(payloadMessage(nl80211Type, payload));
    ASSERT_FALSE(interface) << description(error);
    EXPECT_EQ(interface.error(), error) << description(interface.error());
  }
}

TEST(WifiInterfaceMessage, ABadFigureDoesNotTakeTheInterfaceWithIt) {
  WifiInterfaceMessage expected;
  expected.interfaceType = NL80211_IFTYPE_STATION;
  expected.index = 5;
  const Bytes ssid = attribute(NL80211_ATTR_SSID, textOnly("cafe"));
  const Bytes badFigures[] = {
      attribute(NL80211_ATTR_SSID, Bytes(33)),     joined({ssid, ssid}),
      attribute(NL80211_ATTR_MAC, Bytes(5)),       number16(NL80211_ATTR_WIPHY_FREQ, 5220),
      number8(NL80211_ATTR_CHANNEL_WIDTH, 1),      number8(NL80211_ATTR_CENTER_FREQ1, 1),
      number8(NL80211_ATTR_CENTER_FREQ2, 1),       number8(NL80211_ATTR_WIPHY_TX_POWER_LEVEL, 1),
      attribute(NL80211_ATTR_MLO_LINKS, {1, 2, 3})};
  for (const Bytes& bad : badFigures) {
    const Bytes payload =
        wifiPayload(NL80211_CMD_NEW_INTERFACE,
                    {bad, number32(NL80211_ATTR_IFTYPE, 2), number32(NL80211_ATTR_IFINDEX, 5)});
    EXPECT_EQ(decodeWifiInterface(payloadMessage(nl80211Type, payload)).value(), expected);
  }
}

TEST(WifiInterfaceMessage, ABadLinkDoesNotTakeTheOthersWithIt) {
  const Bytes good = linkElement(2, {number8(NL80211_ATTR_MLO_LINK_ID, 1)});
  for (const Bytes& bad :
       {linkElement(1, {}), linkElement(1, {number8(NL80211_ATTR_MLO_LINK_ID, 15)}),
        linkElement(1, {number16(NL80211_ATTR_MLO_LINK_ID, 0)}), attribute(1, {1, 2, 3})}) {
    const Bytes payload = multiLinkAnswer(nested(NL80211_ATTR_MLO_LINKS, {bad, good}));
    const auto interface = decodeWifiInterface(payloadMessage(nl80211Type, payload));
    ASSERT_TRUE(interface);
    ASSERT_EQ(interface->links.size(), 1U);
    EXPECT_EQ(interface->links[0].linkId, 1);
  }
}

TEST(WifiInterfaceMessage, ElementsBeyondTheLastPossibleLinkAreSkipped) {
  const Bytes payload = multiLinkAnswer(nested(NL80211_ATTR_MLO_LINKS, {linkElement(16, {})}));
  EXPECT_TRUE(decodeWifiInterface(payloadMessage(nl80211Type, payload))->links.empty());
}

TEST(WifiInterfaceMessage, NestedTooDeepIsNotFollowed) {
  Bytes deep;
  for (int level = 0; level < 1000; ++level) deep = attribute(NL80211_ATTR_MLO_LINKS, deep);
  const Bytes inLink = nested(NL80211_ATTR_MLO_LINKS,
                              {linkElement(1, {number8(NL80211_ATTR_MLO_LINK_ID, 0), deep})});
  const Bytes payload = multiLinkAnswer(inLink);
  EXPECT_EQ(decodeWifiInterface(payloadMessage(nl80211Type, payload))->links.size(), 1U);
  const Bytes atTop = multiLinkAnswer(deep);
  EXPECT_TRUE(decodeWifiInterface(payloadMessage(nl80211Type, atTop))->links.empty());
}

TEST(WifiInterfaceMessage, UnknownAttributesAreSkipped) {
  Bytes payload = stationAnswer();
  append(payload, attribute(319, {1}));
  append(payload, attribute(400, {2}));
  append(payload, attribute(0, {}));
  EXPECT_TRUE(decodeWifiInterface(payloadMessage(nl80211Type, payload)));
}

TEST(WifiInterfaceMessage, ACutAnswerTellsNoFigureOtherwise) {
  using Record = WifiInterfaceMessage;
  const std::vector<MeaningfulAttribute<Record>> attributes = {
      {number32(NL80211_ATTR_IFTYPE, 2), [](Record& each) { each.interfaceType = 2; }},
      {number32(NL80211_ATTR_WIPHY, 1), [](Record& each) { each.radioIndex = 1; }},
      {number32(NL80211_ATTR_IFINDEX, 5), [](Record& each) { each.index = 5; }},
      {attribute(NL80211_ATTR_IFNAME, textBytes("wlan0")),
       [](Record& each) { each.name = "wlan0"; }},
      {attribute(NL80211_ATTR_MAC, bytesOf(cellAddress(9))),
       [](Record& each) { each.address = cellAddress(9); }},
      {number32(NL80211_ATTR_WIPHY_FREQ, 5220),
       [](Record& each) { each.channel.frequencyMegahertz = 5220; }},
      {number32(NL80211_ATTR_WIPHY_TX_POWER_LEVEL, 2000),
       [](Record& each) { each.transmitPowerMillibels = 2000; }},
      {attribute(NL80211_ATTR_SSID, textOnly("cafe!")),
       [](Record& each) { each.ssid = textOnly("cafe!"); }},
      {nested(NL80211_ATTR_MLO_LINKS, {linkElement(1, {number8(NL80211_ATTR_MLO_LINK_ID, 0)}),
                                       linkElement(2, {number8(NL80211_ATTR_MLO_LINK_ID, 1)})}),
       [](Record& each) {
         each.links.resize(2);
         each.links[1].linkId = 1;
       }},
  };
  expectCutsTellWholeAttributes(NL80211_CMD_NEW_INTERFACE, attributes, [](const Bytes& payload) {
    return decodeWifiInterface(payloadMessage(nl80211Type, payload));
  });
}

}  // namespace
}  // namespace lanternfold::test
