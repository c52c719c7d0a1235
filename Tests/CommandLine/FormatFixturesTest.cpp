// The fixtures of Docs/formats are what the program writes, to the byte.
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandLine/Program.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"
#include "Support/Rfc3339Text.h"
#include "Tests/CommandLine/WifiScenes.h"
#include "Wiring/DataOptions.h"
#include "Wiring/ServiceOptions.h"

namespace lanternfold {
namespace {

std::string fixture(const std::string& name) {
  std::ifstream stream(std::string(LANTERNFOLD_SOURCE_DIR) + "/Docs/formats/fixtures/" + name);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class FormatFixtures : public testing::Test {
 protected:
  void SetUp() override {
    fake_.addEthernet("en0", {192, 0, 2, 20});
    fake_.kernel.addLink("tun0", {});
  }

  std::string written(const std::vector<std::string>& arguments) {
    std::ostringstream output;
    std::ostringstream errors;
    EXPECT_EQ(runProgram(arguments, {.output = output, .errors = errors},
                         [this](const MachineOptions&) -> const Machine& { return fake_.machine; }),
              ExitStatus::done);
    return output.str();
  }

  FakeMachine fake_;
};

TEST_F(FormatFixtures, InterfacesJson) {
  EXPECT_EQ(written({"interfaces", "--json"}), fixture("interfaces.json"));
}

TEST_F(FormatFixtures, StateJson) {
  EXPECT_EQ(written({"state", "--json"}), fixture("state.json"));
}

TEST_F(FormatFixtures, LocationStatusJson) {
  EXPECT_EQ(written({"location", "status", "--json"}), fixture("location-status.json"));
}

class WifiFormatFixtures : public FormatFixtures {
 protected:
  void SetUp() override {
    FormatFixtures::SetUp();
    addWifiLink(fake_);
    fake_.wifi.setFacts(multiLinkFacts());
  }
  void allow() { fake_.locationConsent.setAuthorizationStatus(3); }
};

TEST_F(WifiFormatFixtures, WifiJson) {
  allow();
  EXPECT_EQ(written({"wifi", "--json"}), fixture("wifi.json"));
}

TEST_F(WifiFormatFixtures, WifiJsonWithoutConsent) {
  EXPECT_EQ(written({"wifi", "--json"}), fixture("wifi-withheld.json"));
}

TEST_F(WifiFormatFixtures, StateJson) {
  allow();
  EXPECT_EQ(written({"state", "--categories", "wlan", "--json"}), fixture("state-wlan.json"));
}

// What a bar would read: every member that the document tells of, of the kind that it says.
TEST_F(WifiFormatFixtures, TheDocumentTellsOfEveryMember) {
  std::ifstream stream(std::string(LANTERNFOLD_SOURCE_DIR) + "/Docs/formats/wifi-json.md");
  const std::string document{std::istreambuf_iterator<char>(stream), {}};
  const auto json = nlohmann::json::parse(fixture("wifi.json"));
  const std::vector<nlohmann::json> objects{json, json.at("links")[0],
                                            json.at("links")[0].at("transmitRate"),
                                            json.at("links")[0].at("channel"), json.at("rsn")};
  for (const nlohmann::json& object : objects) {
    for (const auto& [member, value] : object.items()) {
      EXPECT_THAT(document, testing::HasSubstr("`" + member + "`"));
    }
  }
  EXPECT_EQ(nlohmann::json::parse(fixture("wifi-withheld.json")).at("namesWithheld"), true);
}

class InternetFormatFixtures : public FormatFixtures {
 protected:
  void SetUp() override {
    FormatFixtures::SetUp();
    const ServiceUrls defaults;
    FakeUrlSessions& sessions = fake_.urlSessions;
    sessions.answer(defaults.ipv4EchoEndpoint(), R"({"ip":"203.0.113.7"})");
    sessions.answer(defaults.ipv6EchoEndpoint(), R"({"ip":"2001:db8::7"})");
    sessions.answer(defaults.geolocationEndpoint(),
                    R"({"isp":"Example Net","countryCode":"IT","as":"","query":"203.0.113.7"})");
    fake_.resolverConfiguration.setServers({{IPv4Bytes{192, 0, 2, 1}}});
    fake_.pathMonitors.deliver(
        {.status = PathStatus::satisfied,
         .availableInterfaces = {
             {.name = "en0", .index = 2, .type = PathInterfaceType::wiredEthernet}}});
  }
};

TEST_F(InternetFormatFixtures, StateJson) {
  EXPECT_EQ(written({"state", "--categories", "internet", "--json"}),
            fixture("state-internet.json"));
}

TEST_F(InternetFormatFixtures, PublicInfoCache) {
  fake_.clock.advance(std::chrono::hours(1));
  (void)written({"state", "--categories", "internet", "--json"});
  const auto suite = fake_.userDefaults.suite(defaultAppGroupId);
  const auto answer = suite->object("CachedPublicInfoStorage").value();
  const auto date = suite->object("CachedPublicInfoDate").value();
  ASSERT_TRUE(answer && answer->asDictionary() && date && date->asDate());
  nlohmann::ordered_json texts;
  for (const auto& [key, value] : answer->asDictionary()->entries()) {
    ASSERT_NE(value.asString(), nullptr);
    texts[key] = *value.asString();
  }
  const nlohmann::ordered_json written = {{"CachedPublicInfoStorage", texts},
                                          {"CachedPublicInfoDate", rfc3339Text(*date->asDate())}};
  EXPECT_EQ(written.dump() + '\n', fixture("public-info-cache.json"));
}

TEST_F(FormatFixtures, RecordOnceJson) {
  EXPECT_EQ(written({"record", "--once", "--json"}), fixture("record-once.json"));
}

TEST_F(FormatFixtures, RecordJson) {
  EXPECT_EQ(written({"record", "--json", "--interval", "86400"}), fixture("record.json"));
}

TEST_F(FormatFixtures, ConnectionMetricsJson) {
  const ConnectionMetrics metrics{.sentBytes = 2000,
                                  .recvBytes = 1'500'000,
                                  .sentError = 1,
                                  .recvError = 2,
                                  .sentPacket = 30,
                                  .recvPacket = 40,
                                  .collisions = 5,
                                  .mtu = 1500};
  EXPECT_EQ(encodeConnectionMetrics(metrics) + "\n", fixture("connection-metrics.json"));
  EXPECT_EQ(decodeConnectionMetrics(fixture("connection-metrics.json")), metrics);
}

}  // namespace
}  // namespace lanternfold
