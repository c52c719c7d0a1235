// The internet side of `state`, over servers and a path of a test: what is shown, who is asked.
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/FakeMachine.h"
#include "Wiring/DataOptions.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Json = nlohmann::json;
using Lines = std::vector<std::string>;

constexpr const char* ipv4EchoUrl = "https://four.example/lanternfold/ip.php";
constexpr const char* ipv6EchoUrl = "https://six.example/lanternfold/ip.php";
constexpr const char* geolocationUrl = "http://geo.example/json/?fields=isp,query,countryCode,as";

class InternetStateTest : public testing::Test {
 protected:
  InternetStateTest() {
    fake_.addEthernet("en0", {192, 168, 1, 20});
    fake_.resolverConfiguration.setServers({{IPv4Bytes{192, 168, 1, 1}}});
    fake_.pathMonitors.deliver(
        {.status = PathStatus::satisfied,
         .availableInterfaces = {
             {.name = "en0", .index = 2, .type = PathInterfaceType::wiredEthernet}}});
    answerAll();
  }

  void answerAll(std::chrono::nanoseconds delay = 0s) {
    FakeUrlSessions& sessions = fake_.urlSessions;
    sessions.answer(ipv4EchoUrl, R"({"ip":"203.0.113.7"})", delay);
    sessions.answer(ipv6EchoUrl, R"({"ip":"2001:db8::7"})", delay);
    sessions.answer(geolocationUrl,
                    R"({"isp":"Example Net","countryCode":"IT","as":"","query":"203.0.113.7"})",
                    delay);
  }
  void goOffline() {
    for (const char* url : {ipv4EchoUrl, ipv6EchoUrl, geolocationUrl}) {
      fake_.urlSessions.fail(url, UrlErrorCode::cannotFindHost);
    }
    fake_.pathMonitors.deliver({});
  }

  ExitStatus run(const std::vector<std::string>& further = {},
                 const std::string& categories = "internet") {
    std::vector<std::string> arguments{"state",
                                       "--categories",
                                       categories,
                                       "--ipv4-echo",
                                       "https://four.example",
                                       "--ipv6-echo",
                                       "https://six.example",
                                       "--geolocation",
                                       "http://geo.example"};
    arguments.insert(arguments.end(), further.begin(), further.end());
    output_.str({});
    errors_.str({});
    const auto begin = fake_.clock.steadyNow();
    const ExitStatus status =
        runProgram(arguments, {.output = output_, .errors = errors_},
                   [this](const MachineOptions&) -> const Machine& { return fake_.machine; });
    duration_ = fake_.clock.steadyNow() - begin;
    return status;
  }
  Json internet() {
    EXPECT_EQ(run({"--json"}), ExitStatus::done);
    const Json report = Json::parse(output_.str());
    EXPECT_EQ(report["complete"], true);
    return report["state"]["internet"];
  }
  std::size_t timesAsked(std::string_view url) const {
    return static_cast<std::size_t>(std::ranges::count(fake_.urlSessions.requestedUrls(), url));
  }
  bool keeps(UserDefaults& suite) const {
    return suite.object("CachedPublicInfoStorage")->has_value();
  }

  FakeMachine fake_;
  std::ostringstream output_;
  std::ostringstream errors_;
  std::chrono::nanoseconds duration_{0};
};

TEST_F(InternetStateTest, ShowsWhatOthersSeeOfTheMachine) {
  EXPECT_EQ(run(), ExitStatus::done);
  EXPECT_EQ(output_.str(),
            "Internet\n"
            "  ISP                Example Net\n"
            "  IP - COUNTRY       203.0.113.7 (IT)\n"
            "  DNS                192.168.1.1\n"
            "  IPv6               2001:db8::7\n"
            "  Active connection  Connected via Ethernet\n");
  EXPECT_EQ(fake_.diagnostics.lines(), Lines{});
}

TEST_F(InternetStateTest, AsJsonHoldsTheRecord) {
  const Json info = internet();
  EXPECT_EQ(info["active"], true);
  EXPECT_EQ(info["displayName"], "Internet");
  EXPECT_EQ(info["ip"], "203.0.113.7");
  EXPECT_EQ(info["supportsIPv6"], true);
  EXPECT_EQ(info["ipv6"], "2001:db8::7");
  EXPECT_EQ(info["isp"], "Example Net");
  EXPECT_EQ(info["country"], "IT");
  EXPECT_EQ(info["interface"]["name"], "en0");
  EXPECT_EQ(info["dns"], Json({"192.168.1.1"}));
  EXPECT_EQ(info["metrics"]["recvBytes"], 1'500'000);
}

TEST_F(InternetStateTest, WithoutInternetAccessSaysSoAtOnceAndWhy) {
  goOffline();
  EXPECT_EQ(run(), ExitStatus::done);
  EXPECT_EQ(output_.str(),
            "Internet\n"
            "  Status  Not connected\n"
            "  DNS     192.168.1.1\n");
  EXPECT_EQ(duration_, 0s);
  EXPECT_EQ(fake_.diagnostics.lines(),
            Lines{"Not every service has answered: the host cannot be found (IPv4 echo, IPv6 echo, "
                  "geolocation); check the connection and the services' URLs"});
}

TEST_F(InternetStateTest, SilentServicesAreGivenTheTimeOfAnOrdinaryProgram) {
  for (const char* url : {ipv4EchoUrl, ipv6EchoUrl, geolocationUrl}) {
    fake_.urlSessions.neverAnswer(url);
  }
  const Json info = internet();
  EXPECT_EQ(duration_, 10s) << "5 s for the address, then 5 s for the provider";
  EXPECT_EQ(info["ip"], nullptr);
  EXPECT_EQ(info["supportsIPv6"], false);
}

TEST_F(InternetStateTest, AllAreAskedAtOnceButTheProviderWhichNeedsTheAddress) {
  answerAll(2s);
  EXPECT_EQ(internet()["isp"], "Example Net");
  EXPECT_EQ(duration_, 4s);
}

TEST_F(InternetStateTest, WithoutGeoipNobodyIsAskedForTheProvider) {
  EXPECT_EQ(run({"--skip-geoip", "--json"}), ExitStatus::done);
  const Json info = Json::parse(output_.str())["state"]["internet"];
  EXPECT_EQ(info["ip"], "203.0.113.7");
  EXPECT_EQ(info["isp"], nullptr);
  EXPECT_EQ(info["country"], nullptr);
  EXPECT_EQ(timesAsked(geolocationUrl), 0U);
  EXPECT_FALSE(keeps(*fake_.userDefaults.suite(defaultAppGroupId)));
}

TEST_F(InternetStateTest, TheProviderIsKeptInTheSuiteOfTheGroup) {
  EXPECT_EQ(run(), ExitStatus::done);
  EXPECT_EQ(run(), ExitStatus::done);
  EXPECT_EQ(timesAsked(geolocationUrl), 1U);
  EXPECT_TRUE(keeps(*fake_.userDefaults.suite(defaultAppGroupId)));
  EXPECT_EQ(run({"--app-group", "9.example"}), ExitStatus::done);
  EXPECT_EQ(timesAsked(geolocationUrl), 2U);
  EXPECT_TRUE(keeps(*fake_.userDefaults.suite("9.example")));
  EXPECT_FALSE(keeps(*fake_.userDefaults.standard()));
}

TEST_F(InternetStateTest, WithoutAGroupTheProviderIsKeptInTheStandardSuite) {
  EXPECT_EQ(run({"--no-app-group"}), ExitStatus::done);
  EXPECT_TRUE(keeps(*fake_.userDefaults.standard()));
}

TEST_F(InternetStateTest, ASuiteThatCannotBeOpenedGivesWayToTheStandardOne) {
  fake_.userDefaults.setRefusing(true);
  EXPECT_EQ(run(), ExitStatus::done);
  EXPECT_TRUE(keeps(*fake_.userDefaults.standard()));
}

TEST_F(InternetStateTest, AnAnswerThatCannotBeKeptIsSaidOnce) {
  fake_.userDefaults.setDiskFailing(true);
  EXPECT_EQ(run(), ExitStatus::done);
  EXPECT_THAT(output_.str(), testing::HasSubstr("Example Net"));
  EXPECT_THAT(fake_.diagnostics.lines(), testing::SizeIs(1));
}

TEST_F(InternetStateTest, WhoeverDoesNotAskForItSendsNothing) {
  EXPECT_EQ(run({}, "other,cellular"), ExitStatus::done);
  EXPECT_EQ(fake_.urlSessions.requestedUrls(), Lines{});
}

TEST_F(InternetStateTest, StandsBesideTheAdapters) {
  EXPECT_EQ(run({"--json"}, "internet,other"), ExitStatus::done);
  const Json state = Json::parse(output_.str())["state"];
  EXPECT_EQ(state["internet"]["ip"], "203.0.113.7");
  EXPECT_EQ(state["others"][0]["name"], "en0");
}

TEST_F(InternetStateTest, AWatchNeverShowsAnOvertakenResolutionAsAnAnswer) {
  answerAll(1s);
  EXPECT_EQ(run({"--watch"}), ExitStatus::done);
  // The start refreshes twice, and the second one cancels the questions of the first.
  EXPECT_EQ(timesAsked(ipv4EchoUrl), 2U);
  EXPECT_THAT(output_.str(), testing::StartsWith("Internet\n  ISP                Example Net\n"));
  EXPECT_THAT(output_.str(), testing::Not(testing::HasSubstr("Not connected")));
  EXPECT_EQ(fake_.diagnostics.lines(), Lines{});
}

TEST_F(InternetStateTest, AWatchTellsAFaultOnceAndShowsTheRecovery) {
  fake_.dispatch.mainQueue().after(10s, [this] { goOffline(); });
  fake_.dispatch.mainQueue().after(20s, [this] { fake_.pathMonitors.deliver({}); });
  fake_.dispatch.mainQueue().after(30s, [this] {
    answerAll();
    fake_.pathMonitors.deliver({.status = PathStatus::satisfied, .availableInterfaces = {}});
  });
  EXPECT_EQ(run({"--watch"}), ExitStatus::done);
  EXPECT_THAT(fake_.diagnostics.lines(), testing::SizeIs(1));
  const std::string text = output_.str();
  const auto offline = text.find("Not connected");
  ASSERT_NE(offline, std::string::npos);
  EXPECT_LT(text.find("203.0.113.7"), offline);
  EXPECT_NE(text.find("203.0.113.7", offline), std::string::npos);
}

TEST_F(InternetStateTest, ControlCharactersOfAProviderDoNotReachTheTerminal) {
  fake_.urlSessions.answer(
      geolocationUrl,
      R"({"isp":"A\u001b[31mB\u202eC","countryCode":"IT","as":"","query":"203.0.113.7"})");
  EXPECT_EQ(run(), ExitStatus::done);
  EXPECT_THAT(output_.str(), testing::Not(testing::HasSubstr("\x1b")));
  EXPECT_THAT(output_.str(), testing::Not(testing::HasSubstr("\u202e")));
}

}  // namespace
}  // namespace lanternfold
