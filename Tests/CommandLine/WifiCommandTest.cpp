// `wifi`: everything the kernel tells of the Wi-Fi, as text and as JSON, with and without consent.
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/WifiScenes.h"

namespace lanternfold {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::int32_t allowed = 3;
constexpr std::int32_t denied = 2;

constexpr const char* hint =
    "lanternfold-widgets: the network's name is withheld until you decide: \"lanternfold-widgets "
    "location allow\" shows Wi-Fi names, \"lanternfold-widgets location deny\" does not\n";

class WifiCommandTest : public testing::Test {
 protected:
  ExitStatus run(const std::vector<std::string>& arguments) {
    output_.str({});
    errors_.str({});
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions&) -> const Machine& { return fake_.machine; });
  }
  /// What a run that succeeds without a word writes.
  std::string textOf(const std::vector<std::string>& arguments) {
    EXPECT_EQ(run(arguments), ExitStatus::done);
    EXPECT_EQ(errors_.str(), "");
    return output_.str();
  }
  Json json() { return Json::parse(textOf({"wifi", "--json"})); }

  void allow() { fake_.locationConsent.setAuthorizationStatus(allowed); }

  FakeMachine fake_;
  std::ostringstream output_;
  std::ostringstream errors_;
};

TEST_F(WifiCommandTest, ShowsEveryFigureOfTheJoinedNetwork) {
  fake_.wifi.setFacts(joinedFacts());
  allow();
  EXPECT_EQ(
      textOf({"wifi"}),
      "en1\n"
      "  Radio                phy0, on\n"
      "  Hardware address     02:00:00:00:00:03\n"
      "  Mode                 Station\n"
      "  Country              DE\n"
      "  Transmit power       20 dBm (100 mW)\n"
      "  Network              Example\n"
      "  BSSID                02:00:00:00:01:01\n"
      "  Security             WPA 2 Personal\n"
      "  WPA 2 and 3          PSK; CCMP-128, group CCMP-128; management frames protected\n"
      "  Generation           802.11ac (Wi-Fi 5)\n"
      "  Signal               -54 dBm (-55 dBm on average)\n"
      "  Noise                -92 dBm\n"
      "  Expected throughput  405 Mbit/s\n"
      "  Joined for           1 h 2 min\n"
      "  Channel              44 (5 GHz, 80 MHz), 5220 MHz\n"
      "  Transmit rate        866.7 Mbit/s (MCS 9, 2 streams, 80 MHz, guard interval 400 ns)\n"
      "  Receive rate         780 Mbit/s (MCS 9, 2 streams, 80 MHz, guard interval 400 ns)\n");
}

TEST_F(WifiCommandTest, WithoutADecisionTheNamesAreWithheldAndALineSaysHowToDecide) {
  fake_.wifi.setFacts(joinedFacts());
  EXPECT_EQ(run({"wifi"}), ExitStatus::done);
  EXPECT_EQ(errors_.str(), hint);
  EXPECT_THAT(
      output_.str(),
      testing::AllOf(testing::HasSubstr("  Network              withheld: allow with "
                                        "\"lanternfold-widgets location allow\"\n"
                                        "  BSSID                withheld\n"
                                        "  Security             WPA 2 Personal\n"),
                     testing::HasSubstr("  Signal               -54 dBm (-55 dBm on average)\n"),
                     testing::Not(testing::HasSubstr("Example")),
                     testing::Not(testing::HasSubstr("02:00:00:00:01"))));
}

TEST_F(WifiCommandTest, WhoHasDeniedIsNotToldHowToDecide) {
  fake_.wifi.setFacts(joinedFacts());
  fake_.locationConsent.setAuthorizationStatus(denied);
  EXPECT_THAT(textOf({"wifi"}), testing::HasSubstr("withheld"));
  EXPECT_EQ(json().at("namesWithheld"), true);
}

TEST_F(WifiCommandTest, WithoutANetworkThereIsNothingToWithhold) {
  fake_.wifi.setFacts(factsOfFreeInterface());
  EXPECT_EQ(textOf({"wifi"}),
            "en1\n"
            "  Radio             phy0, on\n"
            "  Hardware address  02:00:00:00:00:03\n"
            "  Mode              Station\n"
            "  Country           DE\n"
            "  Transmit power    20 dBm (100 mW)\n"
            "  Network           none joined\n");
  const Json object = json();
  EXPECT_EQ(object.at("isJoined"), false);
  EXPECT_EQ(object.at("namesWithheld"), false);
  for (const char* member : {"ssid", "bssid", "activePHYMode", "generation", "security", "rsn",
                             "wpa", "signalDbm", "noiseDbm", "transmitRateMegabits"}) {
    EXPECT_EQ(object.at(member), nullptr) << member;
  }
}

TEST_F(WifiCommandTest, ARadioThatIsOffSaysSo) {
  WifiFacts facts = factsOfFreeInterface();
  facts.isPoweredOn = false;
  fake_.wifi.setFacts(facts);
  EXPECT_THAT(textOf({"wifi"}), testing::HasSubstr("  Radio             phy0, off\n"));
  EXPECT_EQ(json().at("powerOn"), false);
}

TEST_F(WifiCommandTest, AMachineWithoutWifiIsNoFailure) {
  EXPECT_EQ(textOf({"wifi"}), "No Wi-Fi.\n");
  EXPECT_EQ(textOf({"wifi", "--json"}), "null\n");
}

TEST_F(WifiCommandTest, AKernelThatRefusesToTellIsNotAMachineWithoutWifi) {
  fake_.wifi.setFacts(joinedFacts());
  fake_.wifi.refuse(NetworkKernelError::refused);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"wifi"}, {"wifi", "--json"}}) {
    EXPECT_EQ(run(arguments), ExitStatus::failed);
    EXPECT_EQ(output_.str(), "");
    EXPECT_EQ(
        errors_.str(),
        "lanternfold-widgets: cannot read this machine's Wi-Fi: the kernel refused the "
        "request; allow this program to open netlink sockets (a sandbox or a service unit may "
        "forbid them)\n");
  }
}

TEST_F(WifiCommandTest, EveryLinkOfAMultiLinkConnectionHasItsFigures) {
  fake_.wifi.setFacts(multiLinkFacts());
  allow();
  const std::string text = textOf({"wifi"});
  EXPECT_THAT(text, testing::HasSubstr("  Joined for           1 h 2 min\n"
                                       "Link 0\n"
                                       "  BSSID          02:00:00:00:01:01\n"
                                       "  Channel        44 (5 GHz, 80 MHz), 5220 MHz\n"));
  EXPECT_THAT(text, testing::HasSubstr(
                        "Link 2\n"
                        "  BSSID          02:00:00:00:01:02\n"
                        "  Channel        37 (6 GHz, 320 MHz), 6135 MHz\n"
                        "  Generation     802.11be (Wi-Fi 7)\n"
                        "  Signal         -61 dBm\n"
                        "  Transmit rate  2882.4 Mbit/s (MCS 11, 1 stream, 320 MHz, guard interval "
                        "800 ns)\n"));
}

TEST_F(WifiCommandTest, WithoutConsentNoLinkHasACell) {
  fake_.wifi.setFacts(multiLinkFacts());
  fake_.locationConsent.setAuthorizationStatus(denied);
  const Json object = json();
  ASSERT_EQ(object.at("links").size(), 2U);
  EXPECT_EQ(object.at("links")[0].at("bssid"), nullptr);
  EXPECT_EQ(object.at("links")[1].at("bssid"), nullptr);
  EXPECT_THAT(textOf({"wifi"}), testing::HasSubstr("Link 2\n  Channel        37 (6 GHz"));
}

TEST_F(WifiCommandTest, JsonHasEveryMemberWithItsUnit) {
  fake_.wifi.setFacts(joinedFacts());
  allow();
  EXPECT_EQ(
      json(),
      Json::parse(
          R"({"interface":"en1","interfaceIndex":3,"radioIndex":0,)"
          R"("hardwareAddress":"02:00:00:00:00:03","interfaceMode":"station","powerOn":true,)"
          R"("countryCode":"DE","transmitPowerDbm":20.0,"transmitPowerMilliwatts":100,)"
          R"("isJoined":true,"namesWithheld":false,"ssid":"Example","bssid":"02:00:00:00:01:01",)"
          R"("activePHYMode":"mode11ac","generation":"vht","security":"wpa2Personal",)"
          R"("rsn":{"authentications":["PSK"],"pairwiseCiphers":["CCMP-128"],)"
          R"("groupCipher":"CCMP-128","managementCipher":null,)"
          R"("offersManagementProtection":true,"requiresManagementProtection":true},"wpa":null,)"
          R"("signalDbm":-54,"signalAverageDbm":-55,"noiseDbm":-92,"transmitRateMegabits":866.7,)"
          R"("expectedThroughputKilobits":405000,"connectedSeconds":3725,"links":[{"linkId":null,)"
          R"("bssid":"02:00:00:00:01:01","channel":{"channelNumber":44,"channelBand":"band5GHz",)"
          R"("channelWidth":"width80MHz"},"frequencyMegahertz":5220,"widthMegahertz":80,)"
          R"("center1Megahertz":5210,"center2Megahertz":null,"generation":"vht","signalDbm":-54,)"
          R"("signalAverageDbm":-55,"transmitRate":{"megabits":866.7,"generation":"vht",)"
          R"("modulation":9,"streams":2,"widthMegahertz":80,"guardIntervalNanoseconds":400},)"
          R"("receiveRate":{"megabits":780.0,"generation":"vht","modulation":9,"streams":2,)"
          R"("widthMegahertz":80,"guardIntervalNanoseconds":400}}]})"));
}

TEST_F(WifiCommandTest, JsonTellsWithheldFromNotJoined) {
  fake_.wifi.setFacts(joinedFacts());
  EXPECT_EQ(run({"wifi", "--json"}), ExitStatus::done);
  EXPECT_EQ(errors_.str(), hint);
  const Json object = Json::parse(output_.str());
  EXPECT_EQ(object.at("isJoined"), true);
  EXPECT_EQ(object.at("namesWithheld"), true);
  EXPECT_EQ(object.at("ssid"), nullptr);
  EXPECT_EQ(object.at("bssid"), nullptr);
  EXPECT_EQ(object.at("security"), "wpa2Personal");
}

TEST_F(WifiCommandTest, ADriverThatTellsNothingGivesNulls) {
  WifiFacts facts = factsOfFreeInterface();
  facts.interface.transmitPowerMillibels.reset();
  facts.interface.address.reset();
  facts.interface.ssid = bytesOfText("Example");
  facts.countryCode.reset();
  fake_.wifi.setFacts(facts);
  allow();
  EXPECT_EQ(textOf({"wifi"}),
            "en1\n"
            "  Radio    phy0, on\n"
            "  Mode     Station\n"
            "  Network  Example\n");
  const Json object = json();
  for (const char* member :
       {"hardwareAddress", "countryCode", "transmitPowerDbm", "transmitPowerMilliwatts", "bssid",
        "generation", "rsn", "signalDbm", "noiseDbm", "transmitRateMegabits",
        "expectedThroughputKilobits", "connectedSeconds"}) {
    EXPECT_EQ(object.at(member), nullptr) << member;
  }
  EXPECT_EQ(object.at("security"), "unknown");
  EXPECT_EQ(object.at("links").at(0).at("channel"), nullptr);
}

// The kernel takes any 32 bytes for a name: they reach no terminal as they are, and the JSON stays
// JSON.
TEST_F(WifiCommandTest, NamesThatAreNoTextReachNoTerminal) {
  const std::vector<std::string> names{"\x1b]0;title\x07",
                                       "two\nlines",
                                       "\xff\xfe\x80",
                                       "a\xe2\x80\xae"
                                       "b",  // turns the writing direction
                                       std::string("nul\0nul", 7),
                                       "\"quoted\", {json}",
                                       "<b>&amp;</b>",
                                       "\xf0\x9f\x8f\xae\xf0\x9f\x8f\xae"};
  allow();
  for (const std::string& name : names) {
    fake_.wifi.setFacts(joinedFacts({.ssid = name}));
    const std::string text = textOf({"wifi"});
    EXPECT_EQ(std::ranges::count(text, '\n'), 18) << text;
    for (const char unsafe : {'\x1b', '\x07', '\xff', '\0'}) {
      EXPECT_EQ(std::ranges::count(text, unsafe), 0) << text;
    }
    EXPECT_THAT(text, testing::Not(testing::HasSubstr("\xe2\x80\xae")));
    EXPECT_TRUE(json().at("ssid").is_string());
  }
}

TEST_F(WifiCommandTest, OptionsThatItDoesNotHaveAreNamed) {
  EXPECT_EQ(run({"wifi", "--watch"}), ExitStatus::badArguments);
  EXPECT_THAT(errors_.str(), testing::HasSubstr("unknown option \"--watch\""));
  EXPECT_EQ(run({"wifi", "en1"}), ExitStatus::badArguments);
  EXPECT_THAT(errors_.str(), testing::HasSubstr("unexpected argument \"en1\""));
}

}  // namespace
}  // namespace lanternfold
