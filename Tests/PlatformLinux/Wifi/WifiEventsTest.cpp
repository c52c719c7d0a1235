#include <gtest/gtest.h>

#include "PlatformLinux/Wifi/WifiEvents.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

WifiNews newsOf(int command) {
  const Bytes payload = wifiPayload(command, {number32(NL80211_ATTR_WIPHY, 0)});
  return newsOfWifiEvent(payloadMessage(nl80211Type, payload));
}

TEST(WifiEvents, ANetworkThatIsJoinedLostOrChangedForAnotherCellIsNews) {
  for (const int command :
       {NL80211_CMD_CONNECT, NL80211_CMD_ROAM, NL80211_CMD_DISCONNECT, NL80211_CMD_ASSOCIATE,
        NL80211_CMD_DEAUTHENTICATE, NL80211_CMD_DISASSOCIATE, NL80211_CMD_JOIN_IBSS}) {
    EXPECT_EQ(newsOf(command), WifiNews::state) << command;
  }
}

TEST(WifiEvents, AnInterfaceThatComesGoesOrChangesItsKindIsNews) {
  for (const int command :
       {NL80211_CMD_NEW_INTERFACE, NL80211_CMD_SET_INTERFACE, NL80211_CMD_DEL_INTERFACE}) {
    EXPECT_EQ(newsOf(command), WifiNews::state) << command;
  }
}

TEST(WifiEvents, AnotherChannelIsNewsOnceItIsInUse) {
  EXPECT_EQ(newsOf(NL80211_CMD_CH_SWITCH_NOTIFY), WifiNews::state);
  EXPECT_EQ(newsOf(NL80211_CMD_CH_SWITCH_STARTED_NOTIFY), WifiNews::none);
}

TEST(WifiEvents, AnotherCountrysRulesAreNews) {
  EXPECT_EQ(newsOf(NL80211_CMD_REG_CHANGE), WifiNews::state);
  EXPECT_EQ(newsOf(NL80211_CMD_WIPHY_REG_CHANGE), WifiNews::state);
  EXPECT_EQ(newsOf(NL80211_CMD_REG_BEACON_HINT), WifiNews::none);
}

TEST(WifiEvents, AnAccessPointOfOnesOwnThatStartsOrStopsIsNews) {
  EXPECT_EQ(newsOf(NL80211_CMD_START_AP), WifiNews::state);
  EXPECT_EQ(newsOf(NL80211_CMD_STOP_AP), WifiNews::state);
}

/// The number is the kernel's: headers before Linux 6.5 do not have it.
TEST(WifiEvents, LinksThatTheAccessPointTakesAwayAreNews) {
  EXPECT_EQ(newsOf(154), WifiNews::state);
}

TEST(WifiEvents, AFinishedScanIsNewsOfTheCellsOnly) {
  for (const int command :
       {NL80211_CMD_NEW_SCAN_RESULTS, NL80211_CMD_SCAN_ABORTED, NL80211_CMD_SCHED_SCAN_RESULTS}) {
    EXPECT_EQ(newsOf(command), WifiNews::cells) << command;
  }
  EXPECT_EQ(newsOf(NL80211_CMD_TRIGGER_SCAN), WifiNews::none);
}

TEST(WifiEvents, ForgedFarewellsGuestsAndMeasurementsAreNoNews) {
  for (const int command :
       {NL80211_CMD_UNPROT_DEAUTHENTICATE, NL80211_CMD_UNPROT_DISASSOCIATE, NL80211_CMD_NEW_STATION,
        NL80211_CMD_DEL_STATION, NL80211_CMD_AUTHENTICATE, NL80211_CMD_NOTIFY_CQM,
        NL80211_CMD_FRAME, NL80211_CMD_NEW_WIPHY, NL80211_CMD_UNSPEC}) {
    EXPECT_EQ(newsOf(command), WifiNews::none) << command;
  }
}

TEST(WifiEvents, ACommandThatIsNotKnownIsNoNews) { EXPECT_EQ(newsOf(255), WifiNews::none); }

TEST(WifiEvents, AReportTooShortForItsCommandIsNews) {
  forEveryCut(bytesOf(genlmsghdr{.cmd = NL80211_CMD_TRIGGER_SCAN}), [](const Bytes& cut) {
    EXPECT_EQ(newsOfWifiEvent(payloadMessage(nl80211Type, cut)), WifiNews::state);
  });
}

TEST(WifiEvents, ScansAreListenedToForTheCellsAlone) {
  EXPECT_EQ(wifiStateGroups(), (std::vector<std::string>{"config", "mlme", "regulatory"}));
  EXPECT_EQ(wifiCellGroups(), (std::vector<std::string>{"config", "mlme", "scan"}));
}

}  // namespace
}  // namespace lanternfold::test
