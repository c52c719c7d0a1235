#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <net/if.h>
#include <utility>

#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/System/LinuxWifiClient.h"
#include "Tests/PlatformLinux/ScriptedNetlink.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold::test {
namespace {

Bytes answerMessage(const Bytes& payload) { return message(nl80211Type, payload, NLM_F_MULTI); }

ScriptedAnswer answerOf(std::initializer_list<Bytes> payloads) {
  ScriptedAnswer answer;
  for (const Bytes& payload : payloads) answer.push_back({.bytes = answerMessage(payload)});
  answer.push_back({.bytes = doneMessage()});
  return answer;
}

ScriptedAnswer refusal(int errorNumber) { return {{.bytes = errorMessage(errorNumber)}}; }

ScriptedAnswer familyAnswer() {
  const Bytes payload = joined(
      {bytesOf(genlmsghdr{.cmd = CTRL_CMD_NEWFAMILY}), number16(CTRL_ATTR_FAMILY_ID, nl80211Type)});
  return {{.bytes = message(GENL_ID_CTRL, payload)}, {.bytes = errorMessage(0)}};
}

Bytes interfacePayload(int index, int type, std::string_view ssid) {
  return wifiPayload(NL80211_CMD_NEW_INTERFACE,
                     {number32(NL80211_ATTR_WIPHY, 1), number32(NL80211_ATTR_IFINDEX, index),
                      attribute(NL80211_ATTR_IFNAME, textBytes("wlan" + std::to_string(index))),
                      number32(NL80211_ATTR_IFTYPE, type), number32(NL80211_ATTR_WIPHY_FREQ, 5220),
                      number32(NL80211_ATTR_CHANNEL_WIDTH, NL80211_CHAN_WIDTH_80),
                      ssid.empty() ? Bytes() : attribute(NL80211_ATTR_SSID, textOnly(ssid))});
}

Bytes cellPayload(bool isJoined, std::uint8_t last = 1) {
  return wifiPayload(
      NL80211_CMD_NEW_SCAN_RESULTS,
      {nested(NL80211_ATTR_BSS,
              {attribute(NL80211_BSS_BSSID, bytesOf(cellAddress(last))),
               number16(NL80211_BSS_CAPABILITY, 0x0011),
               attribute(NL80211_BSS_INFORMATION_ELEMENTS,
                         joined({element(0, textOnly("cafe")), element(48, rsnBody({8}))})),
               isJoined ? number32(NL80211_BSS_STATUS, NL80211_BSS_STATUS_ASSOCIATED) : Bytes()})});
}

Bytes stationPayload(int signal = -47, std::uint8_t last = 1) {
  return wifiPayload(
      NL80211_CMD_NEW_STATION,
      {attribute(NL80211_ATTR_MAC, bytesOf(cellAddress(last))),
       nested(NL80211_ATTR_STA_INFO,
              {number8(NL80211_STA_INFO_SIGNAL, signal),
               nested(NL80211_STA_INFO_TX_BITRATE, {number32(NL80211_RATE_INFO_BITRATE32, 5400),
                                                    number8(NL80211_RATE_INFO_HE_MCS, 7),
                                                    number8(NL80211_RATE_INFO_HE_NSS, 2)})})});
}

Bytes surveyPayload() {
  return wifiPayload(
      NL80211_CMD_NEW_SURVEY_RESULTS,
      {nested(NL80211_ATTR_SURVEY_INFO,
              {number32(NL80211_SURVEY_INFO_FREQUENCY, 5220),
               number8(NL80211_SURVEY_INFO_NOISE, -92), flag(NL80211_SURVEY_INFO_IN_USE)})});
}

ScriptedAnswer countryAnswer() {
  return {{.bytes = answerMessage(wifiPayload(
               NL80211_CMD_GET_REG, {attribute(NL80211_ATTR_REG_ALPHA2, textBytes("DE"))}))},
          {.bytes = errorMessage(0)}};
}

ScriptedAnswer linkAnswer(int index, unsigned flags) {
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

  /// One that keeps the cells until `cellsHaveChanged_`.
  LinuxWifiClient rememberingClient() {
    return LinuxWifiClient(
        [this] { return mayTell_; },
        {.genericNetlink = generic_.opener(),
         .routeNetlink = route_.opener(),
         .deviceTree = DeviceTree(tree_.path()),
         .cellsMayHaveChanged = [this] { return std::exchange(cellsHaveChanged_, false); }});
  }

  /// The exchange for a joined interface whose cells are known.
  void answerWithoutCells(const Bytes& interface, const Bytes& station) {
    generic_.answer(familyAnswer());
    generic_.answer(answerOf({interface}));
    generic_.answer(answerOf({station}));
  }
  void answerSurveyAndCountry() {
    generic_.answer(answerOf({surveyPayload()}));
    generic_.answer(countryAnswer());
  }

  /// How often the list of cells was asked for so far.
  long scanRequests() const {
    return std::ranges::count_if(generic_.requests(), [](const Bytes& request) {
      return firstMessage(request).type == nl80211Type &&
             genericCommand(firstMessage(request)) == NL80211_CMD_GET_SCAN;
    });
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
  bool cellsHaveChanged_ = true;
};

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
      .transmitPower = 0,
      .transmitRate = 540};
  EXPECT_EQ(client().interface(), expected);
  EXPECT_EQ(generic_.requestCount(), 6U);
}

TEST_F(LinuxWifiClientTest, WithoutConsentNoNameLeavesTheClient) {
  answerAsJoined();
  mayTell_ = false;
  const auto report = client().report();
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
  const auto report = client().report();
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
  EXPECT_EQ(client().interface(), expected);
}

TEST_F(LinuxWifiClientTest, AKernelWithoutNl80211HasNone) {
  generic_.answer(refusal(ENOENT));
  EXPECT_EQ(client().interface(), std::nullopt);
}

TEST_F(LinuxWifiClientTest, RefusedNetlinkHasNone) {
  generic_.refuseChannels();
  EXPECT_EQ(client().interface(), std::nullopt);
}

TEST_F(LinuxWifiClientTest, RefusedInterfacesAreNone) {
  generic_.answer(familyAnswer());
  generic_.answer(refusal(EPERM));
  EXPECT_EQ(client().interface(), std::nullopt);
}

TEST_F(LinuxWifiClientTest, AMachineWithoutWifiHasNone) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({}));
  EXPECT_EQ(client().interface(), std::nullopt);
}

TEST_F(LinuxWifiClientTest, AnInterfaceThatMakesNoSenseIsLeftOut) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({wifiPayload(NL80211_CMD_NEW_INTERFACE, {}), {1, 2}}));
  EXPECT_EQ(client().interface(), std::nullopt);
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
    answerAsJoined();
    EXPECT_EQ(asked.interface()->powerOn, powerOn) << soft << hard;
  }
}

TEST_F(LinuxWifiClientTest, TheListOfCellsIsAskedForOnceWhileNothingChanges) {
  answerAsJoined();
  answerWithoutCells(interfacePayload(5, NL80211_IFTYPE_STATION, "cafe"), stationPayload(-60));
  answerSurveyAndCountry();
  const LinuxWifiClient client = rememberingClient();
  const auto first = client.interface();
  const auto second = client.interface();
  ASSERT_TRUE(first && second);
  EXPECT_EQ(scanRequests(), 1);
  EXPECT_EQ(second->rssiValue, -60) << "the signal is read each time";
  EXPECT_EQ(second->bssid, "02:00:00:00:01:01");
  EXPECT_EQ(second->security, WifiSecurity::wpa3Personal);
  EXPECT_EQ(second->noiseMeasurement, -92);
  EXPECT_EQ(second->countryCode, "DE");
}

TEST_F(LinuxWifiClientTest, NewsOfTheCellsHaveTheListAskedForAgain) {
  answerAsJoined();
  answerAsJoined();
  const LinuxWifiClient client = rememberingClient();
  static_cast<void>(client.interface());
  cellsHaveChanged_ = true;
  EXPECT_EQ(client.interface()->bssid, "02:00:00:00:01:01");
  EXPECT_EQ(scanRequests(), 2);
}

TEST_F(LinuxWifiClientTest, AnotherNetworkOrChannelHasTheListAskedForAgain) {
  answerAsJoined();
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interfacePayload(5, NL80211_IFTYPE_STATION, "home")}));
  generic_.answer(answerOf({cellPayload(true, 2)}));
  generic_.answer(answerOf({stationPayload(-50, 2)}));
  answerSurveyAndCountry();
  const LinuxWifiClient client = rememberingClient();
  static_cast<void>(client.interface());
  EXPECT_EQ(client.interface()->bssid, "02:00:00:00:01:02");
  EXPECT_EQ(scanRequests(), 2);
}

/// The peer is known before the report of the change has been sent.
TEST_F(LinuxWifiClientTest, AnotherAccessPointAmongThePeersHasTheListAskedForAgain) {
  answerAsJoined();
  answerWithoutCells(interfacePayload(5, NL80211_IFTYPE_STATION, "cafe"), stationPayload(-50, 2));
  generic_.answer(answerOf({cellPayload(true, 2)}));
  answerSurveyAndCountry();
  const LinuxWifiClient client = rememberingClient();
  static_cast<void>(client.interface());
  const auto roamed = client.interface();
  EXPECT_EQ(roamed->bssid, "02:00:00:00:01:02");
  EXPECT_EQ(roamed->rssiValue, -50);
  EXPECT_EQ(scanRequests(), 2);
}

TEST_F(LinuxWifiClientTest, ThatNoNetworkIsJoinedIsAskedForOnceAsWell) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interfacePayload(4, NL80211_IFTYPE_STATION, "")}));
  generic_.answer(answerOf({cellPayload(false)}));
  generic_.answer(countryAnswer());
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interfacePayload(4, NL80211_IFTYPE_STATION, "")}));
  generic_.answer(countryAnswer());
  route_.answer(linkAnswer(4, IFF_UP));
  const LinuxWifiClient client = rememberingClient();
  static_cast<void>(client.interface());
  const auto second = client.report();
  ASSERT_TRUE(second);
  EXPECT_FALSE(second->isJoined);
  EXPECT_EQ(second->interface.countryCode, "DE");
  EXPECT_EQ(scanRequests(), 1);
}

TEST_F(LinuxWifiClientTest, ANamedNetworkThatIsNotListedYetIsAskedForAgain) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interfacePayload(5, NL80211_IFTYPE_STATION, "cafe")}));
  generic_.answer(answerOf({cellPayload(false)}));
  generic_.answer(answerOf({stationPayload()}));
  answerSurveyAndCountry();
  answerAsJoined();
  const LinuxWifiClient client = rememberingClient();
  EXPECT_EQ(client.interface()->bssid, std::nullopt);
  EXPECT_EQ(client.interface()->bssid, "02:00:00:00:01:01");
}

TEST_F(LinuxWifiClientTest, ARefusedListIsAskedForAgain) {
  generic_.answer(familyAnswer());
  generic_.answer(answerOf({interfacePayload(5, NL80211_IFTYPE_STATION, "cafe")}));
  generic_.answer(refusal(ENOBUFS));
  generic_.answer(answerOf({stationPayload()}));
  answerSurveyAndCountry();
  answerAsJoined();
  const LinuxWifiClient client = rememberingClient();
  static_cast<void>(client.interface());
  EXPECT_EQ(client.interface()->bssid, "02:00:00:00:01:01");
  EXPECT_EQ(scanRequests(), 2);
}

TEST_F(LinuxWifiClientTest, CellsThatAreKeptAreWithheldWithoutConsent) {
  answerAsJoined();
  answerWithoutCells(interfacePayload(5, NL80211_IFTYPE_STATION, "cafe"), stationPayload());
  answerSurveyAndCountry();
  const LinuxWifiClient client = rememberingClient();
  EXPECT_EQ(client.interface()->bssid, "02:00:00:00:01:01");
  mayTell_ = false;
  const auto report = client.report();
  ASSERT_TRUE(report);
  EXPECT_EQ(scanRequests(), 1);
  EXPECT_EQ(report->interface.ssid, std::nullopt);
  EXPECT_EQ(report->interface.bssid, std::nullopt);
  EXPECT_EQ(report->links.at(0).bssid, std::nullopt);
}

TEST(LinuxWifiClientDeathTest, WithoutAnybodyToAskForConsentStopsTheProgram) {
  EXPECT_DEATH(LinuxWifiClient{nullptr}, "cannot ask for the user's consent");
}

}  // namespace
}  // namespace lanternfold::test
