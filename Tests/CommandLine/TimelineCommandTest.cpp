// What `timeline` prints of a machine of fakes, as text and as JSON.
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/WifiScenes.h"

namespace lanternfold {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::Not;

class TimelineCommandTest : public testing::Test {
 protected:
  TimelineCommandTest() {
    fake_.addEthernet("en0", {192, 168, 1, 20});
    fake_.addEthernet("en1", {10, 0, 0, 5});
    fake_.pathMonitors.deliver(
        {.status = PathStatus::satisfied, .availableInterfaces = {{.name = "en1", .index = 2}}});
  }

  ExitStatus run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "timeline");
    for (const char* option : {"--ipv4-echo", "--ipv6-echo", "--geolocation"}) {
      arguments.insert(arguments.end(), {option, "https://nobody.example"});
    }
    output_.str({});
    errors_.str({});
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions&) -> const Machine& { return fake_.machine; });
  }
  Json json(std::vector<std::string> arguments) {
    arguments.emplace_back("--json");
    EXPECT_EQ(run(std::move(arguments)), ExitStatus::done) << errors_.str();
    return Json::parse(output_.str());
  }

  FakeMachine fake_;
  std::ostringstream output_;
  std::ostringstream errors_;
};

TEST_F(TimelineCommandTest, EveryWidgetHasATimelineOfOneEntry) {
  for (const char* kind : {"PanoramicNetworkStateWidget", "InternetNetworkStateWidget",
                           "NetworkAdapterWidget", "WlanNetworkStateWidget"}) {
    const Json timeline = json({kind});
    EXPECT_EQ(timeline["entries"].size(), 1U) << kind;
    EXPECT_EQ(timeline["entries"][0]["view"]["version"], 1) << kind;
    EXPECT_EQ(timeline["policy"], "atEnd") << kind;
  }
  EXPECT_EQ(json({"BandwidthMonitorWidget"})["policy"], "never");
}

TEST_F(TimelineCommandTest, TheAutomaticAdapterIsTheOneOfTheBestDefaultRoute) {
  EXPECT_EQ(run({"NetworkAdapterWidget"}), ExitStatus::done);
  EXPECT_THAT(output_.str(), testing::StartsWith("en1"));
  EXPECT_THAT(output_.str(), HasSubstr("10.0.0.5"));
  EXPECT_EQ(run({"NetworkAdapterWidget", "--adapter", "auto"}), ExitStatus::done);
  EXPECT_THAT(output_.str(), testing::StartsWith("en1"));
}

TEST_F(TimelineCommandTest, AnAdapterThatIsGoneIsExplainedAndNeverAnotherOne) {
  EXPECT_EQ(run({"NetworkAdapterWidget", "--adapter", "en7"}), ExitStatus::done);
  EXPECT_THAT(output_.str(), HasSubstr("Not available"));
  EXPECT_THAT(output_.str(), Not(HasSubstr("10.0.0.5")));
  EXPECT_THAT(errors_.str(), HasSubstr("no adapter is called \"en7\""));
}

TEST_F(TimelineCommandTest, TheWifiWidgetShowsNothingElse) {
  EXPECT_EQ(run({"WlanNetworkStateWidget"}), ExitStatus::done);
  EXPECT_EQ(output_.str(), "No source\n");
}

TEST_F(TimelineCommandTest, TheTileSaysWhereItLeads) {
  EXPECT_EQ(run({"BandwidthMonitorWidget"}), ExitStatus::done);
  EXPECT_THAT(output_.str(), HasSubstr("net.quernaple.LanternfoldX://bandwidth-monitor?mini=1"));
}

TEST_F(TimelineCommandTest, NobodyIsAskedForConsent) {
  addWifiLink(fake_, "en2");
  fake_.wifi.setFacts(joinedFacts({}, "en2"));
  EXPECT_EQ(run({"PanoramicNetworkStateWidget"}), ExitStatus::done);
  EXPECT_TRUE(fake_.locationConsent.requests().empty());
}

TEST_F(TimelineCommandTest, AKernelThatRefusesIsASentenceAndNoEmptyCard) {
  fake_.kernel.fail(FakeNetworkKernel::Table::addressEntries, NetworkKernelError::refused);
  EXPECT_EQ(run({"NetworkAdapterWidget"}), ExitStatus::failed);
  EXPECT_EQ(run({"PanoramicNetworkStateWidget"}), ExitStatus::failed);
  EXPECT_EQ(output_.str(), "");
  EXPECT_EQ(run({"InternetNetworkStateWidget"}), ExitStatus::done);
}

TEST_F(TimelineCommandTest, AWifiThatCannotBeReadFailsItsWidgetAndIsSaidOfThePanoramicOne) {
  fake_.wifi.refuse(NetworkKernelError::refused);
  EXPECT_EQ(run({"WlanNetworkStateWidget"}), ExitStatus::failed);
  EXPECT_EQ(run({"PanoramicNetworkStateWidget"}), ExitStatus::done);
  EXPECT_THAT(errors_.str(), HasSubstr("Wi-Fi is left out"));
}

}  // namespace
}  // namespace lanternfold
