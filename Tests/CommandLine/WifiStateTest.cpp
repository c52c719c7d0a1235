// The Wi-Fi side of `state`: what is shown, what is withheld, and what a refusal looks like.
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandLine/Program.h"
#include "CommandLine/WifiJson.h"
#include "Tests/CommandLine/WifiScenes.h"

namespace lanternfold {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::int32_t allowed = 4;

/// Takes Wi-Fi interfaces for adapters whatever they are called, as the naming of a real machine.
class KernelNaming final : public InterfaceNaming {
 public:
  [[nodiscard]] std::function<bool(std::string_view name)> matcher(
      std::string_view prefix) const override {
    return [prefix = std::string(prefix)](std::string_view name) {
      return name.starts_with(prefix) || (prefix == "en" && name.starts_with("wl"));
    };
  }
};

class WifiStateTest : public testing::Test {
 protected:
  void SetUp() override {
    fake_.addEthernet("en0", {192, 0, 2, 20});
    addWifiLink(fake_);
    fake_.wifi.setFacts(joinedFacts());
  }

  ExitStatus run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "state");
    output_.str({});
    errors_.str({});
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions&) -> const Machine& { return fake_.machine; });
  }
  std::string textOf(const std::vector<std::string>& arguments) {
    EXPECT_EQ(run(arguments), ExitStatus::done);
    return output_.str();
  }
  Json stateOf(const std::vector<std::string>& arguments) {
    return Json::parse(textOf(arguments)).at("state");
  }
  void allow() { fake_.locationConsent.setAuthorizationStatus(allowed); }

  FakeMachine fake_;
  std::ostringstream output_;
  std::ostringstream errors_;
};

TEST_F(WifiStateTest, ShowsTheRowsOfTheCardAndTheFiguresThatHaveNone) {
  allow();
  EXPECT_EQ(textOf({"--categories", "wlan"}),
            "Wi-Fi Adapter\n"
            "  en1             Example\n"
            "  IP              198.51.100.5\n"
            "  Router          0.0.0.0/24\n"
            "  MAC             02:42:ac:11:00:02\n"
            "  BSSID           02:00:00:00:01:01\n"
            "  PHY mode        802.11ac\n"
            "  Security        WPA 2 Personal\n"
            "  Channel         44 (5GHz, 80MHz)\n"
            "  Signal          -54 dBm\n"
            "  Noise           -92 dBm\n"
            "  Transmit power  100 mW\n"
            "  Rate            866.7 Mbit/s\n"
            "  Country         DE\n");
  EXPECT_EQ(errors_.str(), "");
}

TEST_F(WifiStateTest, AsJsonEverythingTheKernelTellsStandsBesideTheState) {
  allow();
  const Json whole = Json::parse(textOf({"--json"})).at("wifi");
  EXPECT_EQ(whole, Json::parse(wifiJson(fake_.wifi.report().value())));
  EXPECT_EQ(whole.at("bssid"), "02:00:00:00:01:01");
  EXPECT_FALSE(Json::parse(textOf({"--categories", "other", "--json"})).contains("wifi"));
}

TEST_F(WifiStateTest, AsJsonAWithheldNameIsToldFromNoNetworkBesideTheState) {
  const Json whole = Json::parse(textOf({"--json"})).at("wifi");
  EXPECT_EQ(whole.at("isJoined"), true);
  EXPECT_EQ(whole.at("namesWithheld"), true);
  EXPECT_EQ(whole.at("ssid"), nullptr);
}

TEST_F(WifiStateTest, FiguresThatTheDriverDoesNotGiveHaveNoLine) {
  WifiFacts facts = joinedFacts();
  facts.stations.clear();
  facts.survey.clear();
  facts.interface.transmitPowerMillibels.reset();
  facts.countryCode.reset();
  facts.joinedCells[0].signalMillibels.reset();
  fake_.wifi.setFacts(facts);
  allow();
  const std::string text = textOf({"--categories", "wlan"});
  for (const char* label : {"Signal", "Noise", "Transmit power", "Rate", "Country"}) {
    EXPECT_THAT(text, testing::Not(testing::HasSubstr(label)));
  }
  EXPECT_THAT(text, testing::HasSubstr("Channel   44 (5GHz, 80MHz)"));
}

TEST_F(WifiStateTest, WithoutADecisionTheNameIsWithheldAndALineSaysHowToDecide) {
  EXPECT_EQ(textOf({"--categories", "wlan"}),
            "Wi-Fi Adapter\n"
            "  SSID    SSID Unvailable, location access needed\n"
            "  IP      198.51.100.5\n"
            "  Router  0.0.0.0/24\n"
            "  MAC     02:42:ac:11:00:02\n");
  EXPECT_THAT(errors_.str(), testing::StartsWith("lanternfold-widgets: the network's name is "
                                                 "withheld until you decide"));
  EXPECT_EQ(std::ranges::count(errors_.str(), '\n'), 1);
}

TEST_F(WifiStateTest, WithoutANetworkThereIsNothingToDecide) {
  fake_.wifi.setFacts(factsOfFreeInterface());
  EXPECT_EQ(run({"--categories", "wlan"}), ExitStatus::done);
  EXPECT_EQ(errors_.str(), "");
}

TEST_F(WifiStateTest, CategoriesWithoutWifiSayNothingOfIt) {
  fake_.wifi.refuse(NetworkKernelError::refused);
  EXPECT_EQ(stateOf({"--categories", "other", "--json"}).at("others").size(), 2U);
  EXPECT_EQ(errors_.str(), "");
}

TEST_F(WifiStateTest, NobodyIsAskedForConsent) {
  (void)textOf({"--categories", "wlan"});
  (void)textOf({"--categories", "wlan", "--watch"});
  EXPECT_TRUE(fake_.locationConsent.requests().empty());
  EXPECT_EQ(fake_.locationConsent.managers(), 0U);
}

TEST_F(WifiStateTest, JsonHasTheRecord) {
  allow();
  const Json wlan = stateOf({"--categories", "wlan", "--json"}).at("wlan");
  EXPECT_EQ(wlan.at("active"), true);
  EXPECT_EQ(wlan.at("displayName"), "Wi-Fi Adapter");
  EXPECT_EQ(wlan.at("mode"), "Station");
  EXPECT_EQ(wlan.at("interface").at("name"), "en1");
  EXPECT_EQ(wlan.at("interface").at("type"), "wlan");
  EXPECT_EQ(wlan.at("currentNetwork"),
            Json::parse(R"({"ssid":"Example","bssid":"02:00:00:00:01:01","metrics":{)"
                        R"("PHYMode":"802.11ac","countryCode":"DE","security":"WPA 2 Personal",)"
                        R"-("channel":"44 (5GHz, 80MHz)","rssi":-54,"noise":-92,)-"
                        R"("transmitPower":100,"transmitRate":866.7}})"));
}

TEST_F(WifiStateTest, IsShownUnlessOtherCategoriesAreChosen) {
  allow();
  const Json state = stateOf({"--json"});
  EXPECT_EQ(state.at("wlan").at("interface").at("name"), "en1");
  ASSERT_EQ(state.at("others").size(), 1U);
  EXPECT_EQ(state.at("others")[0].at("name"), "en0");
  EXPECT_EQ(state.at("internet"), nullptr);
}

TEST_F(WifiStateTest, AnInterfaceCalledAsTheKernelCallsItIsNoOtherAdapter) {
  FakeMachine machine;
  const KernelNaming naming;
  const Platform& fakes = machine.machine.platform;
  const Machine named{.platform = {.kernel = fakes.kernel,
                                   .resolverConfiguration = fakes.resolverConfiguration,
                                   .networkConfiguration = fakes.networkConfiguration,
                                   .interfaceNaming = naming,
                                   .pathMonitors = fakes.pathMonitors,
                                   .dispatch = fakes.dispatch,
                                   .clock = fakes.clock,
                                   .strings = fakes.strings,
                                   .diagnostics = fakes.diagnostics,
                                   .fileSystem = fakes.fileSystem,
                                   .userDefaults = fakes.userDefaults,
                                   .groupContainer = fakes.groupContainer,
                                   .urlSessions = fakes.urlSessions,
                                   .locationConsent = fakes.locationConsent,
                                   .wifiClient = fakes.wifiClient,
                                   .hostLookup = fakes.hostLookup,
                                   .connections = fakes.connections},
                      .mainBundleStrings = fake_.strings,
                      .metricsReader = machine.machine.metricsReader,
                      .soleRecorder = machine.soleRecorder,
                      .readWifi = machine.machine.readWifi,
                      .consentRecord = machine.consentRecord,
                      .mainLoop = machine.mainLoop,
                      .widgetControl = machine.widgetControl,
                      .hostStarter = machine.hostStarter,
                      .assets = machine.machine.assets};
  machine.addEthernet("enp1s0", {192, 0, 2, 20});
  addWifiLink(machine, "wlp2s0");
  machine.wifi.setFacts(factsOfFreeInterface("wlp2s0"));
  const auto namesOf = [&](const std::string& categories) {
    std::ostringstream output;
    EXPECT_EQ(runProgram(std::vector<std::string>{"state", "--json", "--categories", categories},
                         {.output = output, .errors = errors_},
                         [&](const MachineOptions&) -> const Machine& { return named; }),
              ExitStatus::done);
    const Json report = Json::parse(output.str());
    std::vector<std::string> names;
    for (const Json& each : report.at("state").at("others")) names.push_back(each.at("name"));
    return names;
  };
  EXPECT_EQ(namesOf("wlan,other"), std::vector<std::string>{"enp1s0"});
  EXPECT_EQ(namesOf("other"), (std::vector<std::string>{"enp1s0", "wlp2s0"}));
}

TEST_F(WifiStateTest, AMachineWithoutWifiIsNoFailure) {
  fake_.wifi.setFacts(std::nullopt);
  EXPECT_EQ(textOf({"--categories", "wlan"}), "No source\n");
  EXPECT_EQ(stateOf({"--categories", "wlan", "--json"}).at("wlan"), nullptr);
  EXPECT_EQ(stateOf({"--json"}).at("others").size(), 2U);
  EXPECT_EQ(errors_.str(), "");
}

TEST_F(WifiStateTest, ARefusalIsAFailureOfWhoAskedForWifi) {
  fake_.wifi.refuse(NetworkKernelError::refused);
  for (const auto& arguments : {std::vector<std::string>{"--categories", "wlan"},
                                {"--categories", "wlan,other", "--json"},
                                {"--categories", "wlan", "--watch"},
                                {"--categories", "wlan", "--watch", "--json"}}) {
    EXPECT_EQ(run(arguments), ExitStatus::failed);
    EXPECT_THAT(errors_.str(),
                testing::StartsWith("lanternfold-widgets: cannot read this machine's "
                                    "Wi-Fi: the kernel refused the request"));
    EXPECT_EQ(std::ranges::count(errors_.str(), '\n'), 1);
  }
}

TEST_F(WifiStateTest, ARefusalLeavesTheAdaptersToWhoDidNotAskForWifi) {
  fake_.wifi.refuse(NetworkKernelError::refused);
  EXPECT_EQ(stateOf({"--json"}).at("others").size(), 2U);
  EXPECT_THAT(errors_.str(), testing::StartsWith("lanternfold-widgets: Wi-Fi is left out: cannot "
                                                 "read this machine's Wi-Fi: the kernel refused"));
  EXPECT_EQ(std::ranges::count(errors_.str(), '\n'), 1);
}

TEST_F(WifiStateTest, AnInterfaceThatTheKernelsOtherTablesDoNotKnowIsNone) {
  fake_.wifi.setFacts(joinedFacts({}, "en7"));
  EXPECT_EQ(stateOf({"--categories", "wlan", "--json"}).at("wlan"), nullptr);
}

TEST_F(WifiStateTest, ADecisionIsSeenByAWatchAtOnce) {
  fake_.dispatch.mainQueue().after(std::chrono::minutes(5), [this] { allow(); });
  EXPECT_EQ(run({"--categories", "wlan", "--watch"}), ExitStatus::done);
  EXPECT_THAT(output_.str(), testing::ContainsRegex(
                                 "location access needed(.|\n)*\n\nWi-Fi Adapter\n  en1 +Example"));
  EXPECT_EQ(std::ranges::count(errors_.str(), '\n'), 1) << errors_.str();
}

TEST_F(WifiStateTest, ADenialIsSeenByAWatchAtOnce) {
  allow();
  fake_.dispatch.mainQueue().after(std::chrono::minutes(5),
                                   [this] { fake_.locationConsent.setAuthorizationStatus(2); });
  EXPECT_EQ(run({"--categories", "wlan", "--watch"}), ExitStatus::done);
  const std::string reports = output_.str();
  const auto second = reports.find("\n\n");
  ASSERT_NE(second, std::string::npos) << reports;
  EXPECT_THAT(reports.substr(0, second), testing::HasSubstr("Example"));
  EXPECT_THAT(reports.substr(second), testing::Not(testing::HasSubstr("Example")));
  EXPECT_THAT(reports.substr(second), testing::Not(testing::HasSubstr("02:00:00:00:01:01")));
  EXPECT_THAT(reports.substr(second), testing::HasSubstr("Wi-Fi Adapter"));
}

TEST_F(WifiStateTest, AWatchSaysHowToDecideOnce) {
  for (const int minutes : {5, 10}) {
    fake_.dispatch.mainQueue().after(std::chrono::minutes(minutes), [this] {
      fake_.pathMonitors.deliver({.status = PathStatus::satisfied});
    });
  }
  EXPECT_EQ(run({"--categories", "wlan", "--watch", "--json"}), ExitStatus::done);
  EXPECT_EQ(std::ranges::count(errors_.str(), '\n'), 1) << errors_.str();
}

}  // namespace
}  // namespace lanternfold
