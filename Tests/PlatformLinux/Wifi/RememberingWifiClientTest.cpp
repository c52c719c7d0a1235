// Which readings ask the kernel for the list of all cells.
#include <algorithm>
#include <cerrno>
#include <utility>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "Tests/PlatformLinux/Wifi/ScriptedWifi.h"

namespace lanternfold::test {
namespace {

class RememberingWifiClientTest : public LinuxWifiClientTest {
 protected:
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

  bool cellsHaveChanged_ = true;
};

TEST_F(RememberingWifiClientTest, TheListOfCellsIsAskedForOnceWhileNothingChanges) {
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

TEST_F(RememberingWifiClientTest, NewsOfTheCellsHaveTheListAskedForAgain) {
  answerAsJoined();
  answerAsJoined();
  const LinuxWifiClient client = rememberingClient();
  static_cast<void>(client.interface());
  cellsHaveChanged_ = true;
  EXPECT_EQ(client.interface()->bssid, "02:00:00:00:01:01");
  EXPECT_EQ(scanRequests(), 2);
}

TEST_F(RememberingWifiClientTest, AnotherNetworkOrChannelHasTheListAskedForAgain) {
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
TEST_F(RememberingWifiClientTest, AnotherAccessPointAmongThePeersHasTheListAskedForAgain) {
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

TEST_F(RememberingWifiClientTest, ThatNoNetworkIsJoinedIsAskedForOnceAsWell) {
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
  const auto second = client.report().value();
  ASSERT_TRUE(second);
  EXPECT_FALSE(second->isJoined);
  EXPECT_EQ(second->interface.countryCode, "DE");
  EXPECT_EQ(scanRequests(), 1);
}

TEST_F(RememberingWifiClientTest, ANamedNetworkThatIsNotListedYetIsAskedForAgain) {
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

TEST_F(RememberingWifiClientTest, ARefusedListIsAskedForAgain) {
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

TEST_F(RememberingWifiClientTest, CellsThatAreKeptAreWithheldWithoutConsent) {
  answerAsJoined();
  answerWithoutCells(interfacePayload(5, NL80211_IFTYPE_STATION, "cafe"), stationPayload());
  answerSurveyAndCountry();
  const LinuxWifiClient client = rememberingClient();
  EXPECT_EQ(client.interface()->bssid, "02:00:00:00:01:01");
  mayTell_ = false;
  const auto report = client.report().value();
  ASSERT_TRUE(report);
  EXPECT_EQ(scanRequests(), 1);
  EXPECT_EQ(report->interface.ssid, std::nullopt);
  EXPECT_EQ(report->interface.bssid, std::nullopt);
  EXPECT_EQ(report->links.at(0).bssid, std::nullopt);
}

}  // namespace
}  // namespace lanternfold::test
