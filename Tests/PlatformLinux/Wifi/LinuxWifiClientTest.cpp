#include <cerrno>

#include "Tests/PlatformLinux/Wifi/ScriptedWifi.h"

namespace lanternfold::test {
namespace {

TEST_F(LinuxWifiClientTest, TellsEveryFigureOfTheJoinedInterface) {
  answerAsJoined();
  const WifiInterface expected{
      .interfaceName = "wlan5",
      .interfaceMode = WifiInterfaceMode::station,
      .powerOn = true,
      .ssid = "cafe",
      .bssid = "02:00:00:00:01:01",
      .activePHYMode = WifiPhyMode::mode11ax,
      .countryCode = "DE",
      .security = WifiSecurity::wpa3Personal,
      .wlanChannel = WifiChannel{44, WifiChannelBand::band5GHz, WifiChannelWidth::width80MHz},
      .rssiValue = -47,
      .noiseMeasurement = -92,
      .transmitPower = 200,
      .transmitRate = 540};
  EXPECT_EQ(client().interface(), expected);
  EXPECT_EQ(generic_.requestCount(), 6U);
}

TEST_F(LinuxWifiClientTest, WithoutConsentNoNameLeavesTheClient) {
  answerAsJoined();
  mayTell_ = false;
  const auto report = client().report().value();
  ASSERT_TRUE(report);
  EXPECT_TRUE(report->isJoined);
  EXPECT_EQ(report->interface.ssid, std::nullopt);
  EXPECT_EQ(report->interface.bssid, std::nullopt);
  EXPECT_EQ(report->links.at(0).bssid, std::nullopt);
  EXPECT_EQ(report->interface.rssiValue, -47);
  EXPECT_EQ(report->interface.security, WifiSecurity::wpa3Personal);
}

TEST_F(LinuxWifiClientTest, ConsentIsAskedForAnewAtEachReading) {
  answerAsJoined();
  answerAsJoined();
  const LinuxWifiClient asked = client();
  mayTell_ = false;
  EXPECT_EQ(asked.interface()->ssid, std::nullopt);
  mayTell_ = true;
  EXPECT_EQ(asked.interface()->ssid, "cafe");
  EXPECT_EQ(generic_.openedCount(), 1U);
}

TEST_F(LinuxWifiClientTest, AKernelThatOmitsTheNameIsAskedForTheJoinedCells) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interfacePayload(4, NL80211_IFTYPE_STATION, ""),
                            interfacePayload(5, NL80211_IFTYPE_STATION, "")}));
  generic_.answer(answerOf({cellPayload(false)}));
  generic_.answer(answerOf({cellPayload(true)}));
  generic_.answer(answerOf({stationPayload()}));
  generic_.answer(answerOf({}));
  generic_.answer(countryAnswer());
  route_.answer(linkAnswer(5, IFF_UP));
  const auto interface = client().interface();
  ASSERT_TRUE(interface);
  EXPECT_EQ(interface->interfaceName, "wlan5");
  EXPECT_EQ(interface->ssid, "cafe");
}

TEST_F(LinuxWifiClientTest, AnInterfaceWithoutANetworkIsAskedForNothingMore) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interfacePayload(4, NL80211_IFTYPE_STATION, ""),
                            interfacePayload(2, NL80211_IFTYPE_MONITOR, "")}));
  generic_.answer(answerOf({}));
  generic_.answer(countryAnswer());
  route_.answer(linkAnswer(4, IFF_UP));
  const auto report = client().report().value();
  ASSERT_TRUE(report);
  EXPECT_EQ(report->interface.interfaceName, "wlan4");
  EXPECT_FALSE(report->isJoined);
  EXPECT_EQ(report->interface.countryCode, "DE");
  EXPECT_EQ(generic_.requestCount(), 4U);
}

TEST_F(LinuxWifiClientTest, ADriverWithoutSurveyStationsOrCellsLeavesTheRest) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interfacePayload(5, NL80211_IFTYPE_STATION, "cafe")}));
  generic_.answer(refusal(EOPNOTSUPP));
  generic_.answer(refusal(EOPNOTSUPP));
  generic_.answer(refusal(EOPNOTSUPP));
  generic_.answer(refusal(EINVAL));
  route_.answer(linkAnswer(5, IFF_UP));
  WifiInterface expected;
  expected.interfaceName = "wlan5";
  expected.interfaceMode = WifiInterfaceMode::station;
  expected.powerOn = true;
  expected.ssid = "cafe";
  expected.wlanChannel = WifiChannel{44, WifiChannelBand::band5GHz, WifiChannelWidth::width80MHz};
  expected.transmitPower = 200;
  EXPECT_EQ(client().interface(), expected);
}

TEST_F(LinuxWifiClientTest, AKernelWithoutNl80211HasNone) {
  generic_.answer(refusal(ENOENT));
  EXPECT_EQ(client().interface(), std::nullopt);
  EXPECT_EQ(client().report(), WifiReading(std::nullopt));
}

TEST_F(LinuxWifiClientTest, RefusedNetlinkHasNoneAndSaysSo) {
  generic_.refuseChannels();
  EXPECT_EQ(client().interface(), std::nullopt);
  EXPECT_FALSE(client().report());
}

TEST_F(LinuxWifiClientTest, AFamilyThatCannotBeAskedForIsNotAMachineWithoutWifi) {
  generic_.answer(refusal(EPERM));
  EXPECT_EQ(client().interface(), std::nullopt);
  EXPECT_EQ(client().report().error(), NetworkKernelError::refused);
}

TEST_F(LinuxWifiClientTest, AFamilyWithoutATypeIsMalformed) {
  generic_.answer(
      {{.bytes = message(GENL_ID_CTRL, bytesOf(genlmsghdr{}))}, {.bytes = errorMessage(0)}});
  EXPECT_EQ(client().report().error(), NetworkKernelError::malformed);
}

TEST_F(LinuxWifiClientTest, RefusedInterfacesAreNoneAndSaysSo) {
  generic_.answer(familyAnswer());
  generic_.answer(refusal(EPERM));
  EXPECT_EQ(client().interface(), std::nullopt);
  EXPECT_EQ(client().report().error(), NetworkKernelError::refused);
}

TEST_F(LinuxWifiClientTest, AMachineWithoutWifiHasNone) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({}));
  EXPECT_EQ(client().interface(), std::nullopt);
}

TEST_F(LinuxWifiClientTest, AnInterfaceThatMakesNoSenseIsLeftOut) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({wifiPayload(NL80211_CMD_NEW_INTERFACE, {}),
                            interfacePayload(4, NL80211_IFTYPE_STATION, "")}));
  generic_.answer(answerOf({}));
  generic_.answer(countryAnswer());
  route_.answer(linkAnswer(4, IFF_UP));
  EXPECT_EQ(client().interface().value().interfaceName, "wlan4");
}

TEST_F(LinuxWifiClientTest, AMalformedSoleInterfaceIsNotAMachineWithoutWifi) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({wifiPayload(NL80211_CMD_NEW_INTERFACE, {}), {1, 2}}));
  EXPECT_EQ(client().report().error(), NetworkKernelError::malformed);
  EXPECT_EQ(client().interface(), std::nullopt);
}

TEST_F(LinuxWifiClientTest, AMalformedInterfaceBesideAMonitorIsNotAMachineWithoutWifi) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interfacePayload(2, NL80211_IFTYPE_MONITOR, ""), {1, 2}}));
  EXPECT_EQ(client().report().error(), NetworkKernelError::malformed);
}

TEST_F(LinuxWifiClientTest, AMonitorAloneIsAMachineWithoutWifi) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interfacePayload(2, NL80211_IFTYPE_MONITOR, "")}));
  EXPECT_EQ(client().report(), WifiReading(std::nullopt));
}

/// An SSID that cannot be one: the cell names the network.
TEST_F(LinuxWifiClientTest, ABadNameDoesNotTakeTheInterfaceWithIt) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf(
      {interfacePayload(5, NL80211_IFTYPE_STATION, "a name of more bytes than there may be")}));
  generic_.answer(answerOf({cellPayload(true)}));
  generic_.answer(answerOf({stationPayload()}));
  generic_.answer(answerOf({surveyPayload()}));
  generic_.answer(countryAnswer());
  route_.answer(linkAnswer(5, IFF_UP));
  const auto interface = client().interface();
  ASSERT_TRUE(interface);
  EXPECT_EQ(interface->interfaceName, "wlan5");
  EXPECT_EQ(interface->ssid, "cafe");
  EXPECT_EQ(interface->rssiValue, -47);
}

TEST_F(LinuxWifiClientTest, WhatIsListedTwiceIsToldOnce) {
  answerAsJoined();
  const auto once = client().report();
  const Bytes interface = interfacePayload(5, NL80211_IFTYPE_STATION, "cafe");
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interface, interface}));
  generic_.answer(answerOf({cellPayload(true), cellPayload(true)}));
  generic_.answer(answerOf({stationPayload(), stationPayload()}));
  generic_.answer(answerOf({surveyPayload(), surveyPayload()}));
  generic_.answer(countryAnswer());
  ASSERT_TRUE(once.value());
  EXPECT_EQ(client().report(), once);
  EXPECT_EQ(generic_.requestCount(), 12U);
}

TEST_F(LinuxWifiClientTest, OfManyInterfacesWithoutANetworkTheFirst16AreAskedForCells) {
  ScriptedAnswer interfaces;
  for (int index = 1; index <= 20; ++index) {
    interfaces.push_back(
        {.bytes = answerMessage(interfacePayload(index, NL80211_IFTYPE_STATION, ""))});
  }
  interfaces.push_back({.bytes = doneMessage()});
  generic_.answer(familyAnswer());
  generic_.answer(interfaces);
  for (int index = 1; index <= 16; ++index) generic_.answer(answerOf({cellPayload(false)}));
  generic_.answer(countryAnswer());
  route_.answer(linkAnswer(1, IFF_UP));
  const auto report = client().report().value();
  ASSERT_TRUE(report);
  EXPECT_EQ(report->interface.interfaceName, "wlan1");
  EXPECT_FALSE(report->isJoined);
  EXPECT_EQ(report->interface.countryCode, "DE");
  EXPECT_EQ(generic_.requestCount(), 19U);
}

TEST_F(LinuxWifiClientTest, ALinkThatIsDownIsPoweredOff) {
  answerAsJoined();
  ScriptedNetlink down;
  down.answer(linkAnswer(5, 0));
  const LinuxWifiClient client([] { return true; }, {.genericNetlink = generic_.opener(),
                                                     .routeNetlink = down.opener(),
                                                     .deviceTree = DeviceTree(tree_.path())});
  EXPECT_FALSE(client.interface()->powerOn);
}

TEST_F(LinuxWifiClientTest, ALinkOfAnotherIndexIsAnotherLink) {
  answerAsJoined();
  ScriptedNetlink renamed;
  renamed.answer(linkAnswer(6, IFF_UP));
  const LinuxWifiClient client([] { return true; }, {.genericNetlink = generic_.opener(),
                                                     .routeNetlink = renamed.opener(),
                                                     .deviceTree = DeviceTree(tree_.path())});
  EXPECT_FALSE(client.interface()->powerOn);
}

TEST_F(LinuxWifiClientTest, RefusedLinksArePoweredOff) {
  answerAsJoined();
  route_.refuseChannels();
  EXPECT_FALSE(client().interface()->powerOn);
}

TEST_F(LinuxWifiClientTest, ASwitchOfSoftwareOrHardwareTurnsTheRadioOff) {
  const std::tuple<std::string_view, std::string_view, bool> cases[] = {{"0\n", "0\n", true},
                                                                        {"1\n", "0\n", false},
                                                                        {"0\n", "1\n", false},
                                                                        {"1\n", "1\n", false},
                                                                        {"", "", true}};
  const LinuxWifiClient asked = client();
  for (const auto& [soft, hard, powerOn] : cases) {
    addSwitch(soft, hard);
    answerAsNotJoined();
    EXPECT_EQ(asked.interface()->powerOn, powerOn) << soft << hard;
  }
}

TEST_F(LinuxWifiClientTest, ARadioThatHasJoinedANetworkIsOnWithoutALookAtItsSwitch) {
  addSwitch("1\n", "1\n");
  answerAsJoined();
  EXPECT_TRUE(client().interface()->powerOn);
}

TEST(LinuxWifiClientDeathTest, WithoutAnybodyToAskForConsentStopsTheProgram) {
  EXPECT_DEATH(LinuxWifiClient{nullptr}, "cannot ask for the user's consent");
}

}  // namespace
}  // namespace lanternfold::test
