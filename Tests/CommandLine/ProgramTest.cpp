// The program as a user at a shell meets it: arguments in, text and exit status out.
#include <cerrno>
#include <sstream>
#include <system_error>

#include <asio/error.hpp>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/FakeMachine.h"

namespace lanternfold {
namespace {

class ProgramTest : public testing::Test {
 protected:
  ExitStatus run(const std::vector<std::string>& arguments) {
    output_.str({});
    errors_.str({});
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions& options) -> const Machine& {
                        ++machinesMade_;
                        machineOptions_ = options;
                        return fake_.machine;
                      });
  }
  std::string output() const { return output_.str(); }
  std::string errors() const { return errors_.str(); }

  FakeMachine fake_;
  std::ostringstream output_;
  std::ostringstream errors_;
  int machinesMade_ = 0;
  MachineOptions machineOptions_;
};

TEST_F(ProgramTest, HelpListsTheCommandsAndTheExitStatusesAndNeedsNoMachine) {
  EXPECT_EQ(run({"--help"}), ExitStatus::done);
  for (const char* text : {"interfaces", "state", "record", "render", "Exit status"}) {
    EXPECT_THAT(output(), testing::HasSubstr(text));
  }
  EXPECT_EQ(errors(), "");
  EXPECT_EQ(machinesMade_, 0);
}

TEST_F(ProgramTest, EveryCommandHasAHelpOfItsOwnThatNamesItsOptions) {
  EXPECT_EQ(run({"interfaces", "--help"}), ExitStatus::done);
  EXPECT_THAT(output(),
              testing::AllOf(testing::HasSubstr("--prefix"), testing::HasSubstr("--excluding"),
                             testing::HasSubstr("--json")));
  EXPECT_EQ(run({"state", "--help"}), ExitStatus::done);
  EXPECT_THAT(output(),
              testing::AllOf(testing::HasSubstr("--categories"), testing::HasSubstr("--watch")));
  EXPECT_EQ(run({"record", "--help"}), ExitStatus::done);
  for (const char* option : {"--once", "--json", "--interval"}) {
    EXPECT_THAT(output(), testing::HasSubstr(option));
  }
  EXPECT_EQ(run({"render", "--help"}), ExitStatus::done);
  for (const char* option : {"KIND", "--family", "--scheme", "--scale", "--entry", "--adapter",
                             "--show-timestamp", "--output"}) {
    EXPECT_THAT(output(), testing::HasSubstr(option));
  }
}

TEST_F(ProgramTest, EveryCommandTakesTheOptionsThatSayWhereThingsAreKept) {
  for (const char* command : {"interfaces", "state", "record", "render"}) {
    EXPECT_EQ(run({command, "--help"}), ExitStatus::done);
    for (const char* option : {"--data-dir", "--app-group", "--no-app-group",
                               "default 7RKM3PW2ZB.net.quernaple.LanternfoldX"}) {
      EXPECT_THAT(output(), testing::HasSubstr(option)) << command;
    }
  }
  EXPECT_EQ(run({"interfaces", "--data-dir", "/srv/traffic", "--app-group", "9.example"}),
            ExitStatus::done);
  EXPECT_EQ(machineOptions_.dataFolder, "/srv/traffic");
  EXPECT_EQ(run({"interfaces", "--no-app-group"}), ExitStatus::done);
  EXPECT_EQ(machineOptions_.dataFolder, std::nullopt);
}

TEST_F(ProgramTest, EveryCommandTakesTheOptionsThatSayWhoIsAsked) {
  for (const char* command : {"interfaces", "state", "record", "render", "echo-service"}) {
    EXPECT_EQ(run({command, "--help"}), ExitStatus::done);
    for (const char* option : {"--skip-geoip", "--ipv4-echo", "--ipv6-echo", "--geolocation",
                               "--sentinel", "--ca-file"}) {
      EXPECT_THAT(output(), testing::HasSubstr(option)) << command;
    }
  }
}

TEST_F(ProgramTest, CertificatesThatCannotBeReadAreAFailureOfEveryCommand) {
  EXPECT_EQ(run({"interfaces", "--ca-file", "/nowhere/ca.pem"}), ExitStatus::failed);
  EXPECT_EQ(machineOptions_.certificateAuthoritiesFile, "/nowhere/ca.pem");
  EXPECT_THAT(errors(), testing::HasSubstr("\"/nowhere/ca.pem\" cannot be used: there is no such"));
  EXPECT_EQ(output(), "");
}

TEST_F(ProgramTest, VersionIsPrinted) {
  EXPECT_EQ(run({"--version"}), ExitStatus::done);
  EXPECT_THAT(output(), testing::StartsWith("lanternfold-widgets "));
}

TEST_F(ProgramTest, WhatIsNotUnderstoodIsOneLineOnStandardErrorAndStatusTwo) {
  const std::vector<std::vector<std::string>> wrong = {
      {},
      {"draw"},
      {"interfaces", "--colour"},
      {"interfaces", "eth0"},
      {"interfaces", "--prefix"},
      {"interfaces", "--app-group", ".."},
      {"record", "eth0"},
      {"record", "--interval"},
      {"record", "--interval", "86401"},
      {"record", "--interval", "-1"},
      {"record", "--app-group", "a b"},
      {"record", "--app-group", "a", "--no-app-group"},
      {"record", "--data-dir"},
      {"record", "--data-dir", ""},
      {"state", "--categories", "everything"},
      {"state", "--categories", ""},
      {"render"},
      {"render", "NetworkAdapterWidget"},
      {"render", "Panorama", "-o", "a.png"},
      {"timeline"},
      {"timeline", "Panorama"},
      {"timeline", "WlanNetworkStateWidget", "--adapter", "en0"},
      {"timeline", "BandwidthMonitorWidget", "--family", "large"},
      {"render", "NetworkAdapterWidget", "-o", "a.gif"},
      {"render", "NetworkAdapterWidget", "-o", "png"},
      {"render", "NetworkAdapterWidget", "-o", "a.png", "--family", "large"},
      {"render", "NetworkAdapterWidget", "-o", "a.png", "--family", "huge"},
      {"render", "NetworkAdapterWidget", "-o", "a.png", "--scheme", "sepia"},
      {"render", "NetworkAdapterWidget", "-o", "a.png", "--scale", "0"},
      {"render", "NetworkAdapterWidget", "-o", "a.png", "--scale", "nan"},
      {"render", "NetworkAdapterWidget", "-o", "a.png", "--scale", "1e9"},
      {"render", "NetworkAdapterWidget", "-o", "a.png", "--scale", "two"},
      {"render", "NetworkAdapterWidget", "-o", "a.png", "--entry", "now"},
      {"render", "NetworkAdapterWidget", "-o", "a.png", "--adapter", ""},
      {"render", "NetworkAdapterWidget", "-o", "a.png", "--adapter", "en/0"},
      {"timeline", "NetworkAdapterWidget", "--adapter", std::string(16, 'e')},
  };
  for (const auto& arguments : wrong) {
    EXPECT_EQ(run(arguments), ExitStatus::badArguments) << testing::PrintToString(arguments);
    EXPECT_EQ(output(), "") << testing::PrintToString(arguments);
    EXPECT_THAT(errors(), testing::StartsWith("lanternfold-widgets: "));
    EXPECT_EQ(std::ranges::count(errors(), '\n'), 1) << errors();
  }
  EXPECT_EQ(machinesMade_, 0)
      << "nothing is asked of the machine for a command that makes no sense";
}

TEST_F(ProgramTest, ABadArgumentIsNamed) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> culprits = {
      {{}, "no command was given"},
      {{"bogus"}, "unknown command \"bogus\""},
      {{"--bogus", "state"}, "unknown option \"--bogus\"; options come behind the command"},
      {{"state", "--cafile", "x"}, "unknown option \"--cafile\""},
      {{"state", "--ca-file", ""}, "--ca-file needs a file's name"},
      {{"record", "--ipv4-echo", "ftp://a"},
       "--ipv4-echo \"ftp://a\": the URL of a service begins"},
      {{"interfaces", "--ipv6-echo", "https://"}, "--ipv6-echo \"https://\": the URL of a service"},
      {{"state", "--geolocation", ""}, "--geolocation \"\": the URL of a service"},
      {{"state", "--sentinel", "http://u@a"}, "--sentinel \"http://u@a\": the URL of a service"},
      {{"state", "--data-dir", ""}, "--data-dir"},
      {{"interfaces", "--app-group", "../x"}, "\"../x\" cannot name an application group"},
      {{"interfaces", "--app-group", ""}, "\"\" cannot name an application group"},
      {{"render", "NetworkAdapterWidget", "-o", "a.png", "--app-group", "a", "--no-app-group"},
       "--app-group and --no-app-group exclude each other"},
      {{"record", "--interval", "0"}, "from 1 to 86400, not \"0\""},
      {{"record", "--interval", "nan"}, "from 1 to 86400, not \"nan\""},
      {{"record", "--interval", "soon"}, "soon"},
      {{"record", "--once", "--interval", "5"}, "--once"},
      {{"interfaces", "eth0", "eth1"}, "unexpected argument \"eth0\""},
      {{"interfaces", "--prefix"}, "--prefix"},
      {{"state", "--categories", "all"}, "unknown category \"all\""},
      {{"render"}, "KIND"},
      {{"render", "NetworkAdapterWidget"}, "--output"},
      {{"render", "Panorama", "-o", "a.png"}, "unknown widget kind \"Panorama\""},
      {{"timeline", "Panorama"},
       "unknown widget kind \"Panorama\"; use PanoramicNetworkStateWidget, "
       "InternetNetworkStateWidget, NetworkAdapterWidget, BandwidthMonitorWidget or "
       "WlanNetworkStateWidget"},
      {{"timeline", "BandwidthMonitorWidget", "--family", "large"},
       "BandwidthMonitorWidget has no large family; use small"},
      {{"timeline", "InternetNetworkStateWidget", "--adapter", "en0"}, "--adapter chooses what"},
      {{"render", "NetworkAdapterWidget", "-o", "a.gif"}, "\"a.gif\""},
      {{"render", "NetworkAdapterWidget", "-o", "a.png", "--family", "large"}, "no large family"},
      {{"render", "NetworkAdapterWidget", "-o", "a.png", "--scheme", "sepia"}, "\"sepia\""},
      {{"render", "NetworkAdapterWidget", "-o", "a.png", "--scale", "9"},
       "from 0.5 to 8, such as 2 or 1.5, not \"9\""},
      {{"render", "NetworkAdapterWidget", "-o", "a.png", "--scale", "two"}, "two"},
      {{"render", "NetworkAdapterWidget", "-o", "a.png", "--entry", "now"}, "\"now\""},
  };
  for (const auto& [arguments, culprit] : culprits) {
    EXPECT_EQ(run(arguments), ExitStatus::badArguments);
    EXPECT_THAT(errors(), testing::HasSubstr(culprit));
  }
}

TEST_F(ProgramTest, AControlCharacterInAnArgumentIsNotEchoedToTheTerminal) {
  EXPECT_EQ(run({"state", "--categories", "\x1b[31mred\n"}), ExitStatus::badArguments);
  EXPECT_THAT(errors(), testing::HasSubstr("\\x1b[31mred\\x0a"));
  EXPECT_EQ(std::ranges::count(errors(), '\n'), 1);
}

TEST_F(ProgramTest, InterfacesPrintsATableByName) {
  fake_.addEthernet("en1", {10, 0, 0, 5});
  fake_.addEthernet("en0", {192, 168, 1, 20});
  EXPECT_EQ(run({"interfaces"}), ExitStatus::done);
  EXPECT_EQ(output(),
            "Name  Adapter           State   IPv4          Router       MAC                "
            "Received  Sent\n"
            "en0   Ethernet Adapter  active  192.168.1.20  192.168.1.1  02:42:AC:11:00:02    1.5 "
            "MB  2 KB\n"
            "en1   Ethernet Adapter  active  10.0.0.5      10.0.0.1     02:42:AC:11:00:02    1.5 "
            "MB  2 KB\n");
}

TEST_F(ProgramTest, InterfacesShowsFurtherAddressesOnLinesOfTheirOwnAndAnUnknownRouterAsADash) {
  fake_.kernel.addLink("en0");
  fake_.kernel.addIPv4Address("en0", {10, 0, 0, 5}, {255, 0, 0, 0});
  fake_.kernel.addIPv4Address("en0", {10, 0, 0, 6}, {255, 0, 0, 0});
  EXPECT_EQ(run({"interfaces"}), ExitStatus::done);
  EXPECT_EQ(output(),
            "Name  Adapter  State   IPv4      Router  MAC                Received     Sent\n"
            "en0   en0      active  10.0.0.5  -       02:42:AC:11:00:02   Zero KB  Zero KB\n"
            "                       10.0.0.6  -\n");
}

TEST_F(ProgramTest, InterfacesTakesAPrefixAndAListOfNamesToLeaveOutTogether) {
  for (const char* name : {"en0", "en01", "en1", "tun0"}) fake_.kernel.addLink(name);
  EXPECT_EQ(run({"interfaces", "--prefix", "en", "--excluding", "en0,en1", "--json"}),
            ExitStatus::done);
  const auto json = nlohmann::json::parse(output());
  ASSERT_EQ(json.size(), 1U);
  EXPECT_EQ(json[0]["name"], "en01");
}

TEST_F(ProgramTest, InterfacesJsonHoldsTheRecordsFieldsInTheirOrder) {
  fake_.addEthernet("en0", {192, 168, 1, 20});
  EXPECT_EQ(run({"interfaces", "--json"}), ExitStatus::done);
  EXPECT_EQ(
      output(),
      R"([{"active":true,"displayName":"Ethernet Adapter","metrics":{"sentBytes":2000,"recvBytes":1500000,"sentError":0,"recvError":0,"sentPacket":0,"recvPacket":0,"collisions":0,"mtu":1500},"name":"en0","type":"ethernet","supportsIPv4":true,"IPv4":[{"address":"192.168.1.20","netmask":"255.255.255.0","gateway":"192.168.1.1","cidr":"192.168.1.1/24"}],"supportsIPv6":false,"IPv6":[],"hwAddress":"02:42:AC:11:00:02"}])"
      "\n");
  EXPECT_EQ(machineOptions_.diagnostics, DiagnosticsTarget::standardError)
      << "standard output holds JSON only, so diagnostics go elsewhere";
}

TEST_F(ProgramTest, AMachineWithoutInterfacesIsAResult) {
  EXPECT_EQ(run({"interfaces"}), ExitStatus::done);
  EXPECT_EQ(output(), "No interface matches.\n");
  EXPECT_EQ(run({"interfaces", "--json"}), ExitStatus::done);
  EXPECT_EQ(output(), "[]\n");
  EXPECT_EQ(run({"state"}), ExitStatus::done);
  EXPECT_EQ(output(), "No source\n");
}

TEST_F(ProgramTest, AKernelThatRefusesIsAFailureThatSaysWhatToDo) {
  fake_.kernel.fail(FakeNetworkKernel::Table::addressEntries, NetworkKernelError::refused);
  for (const char* command : {"interfaces", "state"}) {
    EXPECT_EQ(run({command, "--json"}), ExitStatus::failed);
    EXPECT_EQ(output(), "");
    EXPECT_THAT(errors(), testing::HasSubstr("the kernel refused the request; allow"));
    EXPECT_EQ(std::ranges::count(errors(), '\n'), 1);
  }
}

TEST_F(ProgramTest, WatchingAKernelThatRefusesIsAFailureAndNoEndlessWait) {
  fake_.kernel.fail(FakeNetworkKernel::Table::addressEntries, NetworkKernelError::refused);
  const auto begin = fake_.clock.steadyNow();
  EXPECT_EQ(run({"state", "--watch"}), ExitStatus::failed);
  EXPECT_THAT(errors(), testing::HasSubstr("the kernel refused the request"));
  EXPECT_LT(fake_.clock.steadyNow() - begin, std::chrono::minutes(1));
}

TEST_F(ProgramTest, WhatWasNotAskedForMayBeRefused) {
  fake_.kernel.fail(FakeNetworkKernel::Table::addressEntries, NetworkKernelError::refused);
  EXPECT_EQ(run({"state", "--categories", "cellular"}), ExitStatus::done);
}

TEST_F(ProgramTest, StatePrintsEachAdaptersRows) {
  fake_.addEthernet("en0", {192, 168, 1, 20});
  EXPECT_EQ(run({"state"}), ExitStatus::done);
  EXPECT_EQ(output(),
            "Ethernet Adapter\n"
            "  en0     Ethernet Adapter\n"
            "  IP      192.168.1.20\n"
            "  Router  192.168.1.1/24\n"
            "  MAC     02:42:ac:11:00:02\n");
}

TEST_F(ProgramTest, StateJsonIsCompleteAndLeavesOutWhatWasNotAskedFor) {
  fake_.addEthernet("en0", {192, 168, 1, 20});
  EXPECT_EQ(run({"state", "--categories", "cellular", "--json"}), ExitStatus::done);
  EXPECT_EQ(output(),
            "{\"complete\":true,\"state\":{\"internet\":null,\"wlan\":null,\"cellular\":null,"
            "\"others\":[],\"cellularEnabled\":false,\"multipleSim\":false}}\n");
  EXPECT_EQ(run({"state", "--json"}), ExitStatus::done);
  EXPECT_EQ(nlohmann::json::parse(output())["state"]["others"][0]["name"], "en0");
}

TEST_F(ProgramTest, WatchReportsAgainWhenThePathChanges) {
  fake_.addEthernet("en0", {192, 168, 1, 20});
  fake_.dispatch.mainQueue().after(std::chrono::seconds(5), [this] {
    fake_.kernel.removeAddresses("en0");
    fake_.pathMonitors.deliver({});
  });
  EXPECT_EQ(run({"state", "--watch"}), ExitStatus::done);
  EXPECT_EQ(output(),
            "Ethernet Adapter\n"
            "  en0     Ethernet Adapter\n"
            "  IP      192.168.1.20\n"
            "  Router  192.168.1.1/24\n"
            "  MAC     02:42:ac:11:00:02\n"
            "\n"
            "Ethernet Adapter\n"
            "  en0  Ethernet Adapter\n"
            "  MAC  02:42:ac:11:00:02\n")
      << "a refresh that changes nothing is not shown again";
}

TEST_F(ProgramTest, WatchAsJsonWritesEveryReportOnALineOfItsOwn) {
  fake_.addEthernet("en0", {192, 168, 1, 20});
  EXPECT_EQ(run({"state", "--watch", "--json"}), ExitStatus::done);
  std::istringstream lines(output());
  int complete = 0;
  for (std::string line; std::getline(lines, line);) {
    if (nlohmann::json::parse(line)["complete"] == true) ++complete;
  }
  EXPECT_EQ(complete, 2) << "one refresh at the start and one for the first path";
}

TEST_F(ProgramTest, AWatchOfAKernelThatRefusesFailsInsteadOfWaiting) {
  fake_.kernel.fail(FakeNetworkKernel::Table::addressEntries, NetworkKernelError::refused);
  EXPECT_EQ(run({"state", "--watch"}), ExitStatus::failed);
  EXPECT_EQ(output(), "");
  EXPECT_THAT(errors(), testing::HasSubstr("the kernel refused the request; allow"));
}

TEST_F(ProgramTest, WatchEndsWhenNobodyReadsTheOutputAnyMore) {
  fake_.addEthernet("en0", {192, 168, 1, 20});
  const auto begin = fake_.clock.steadyNow();
  output_.setstate(std::ios::badbit);
  EXPECT_EQ(run({"state", "--watch"}), ExitStatus::failed);
  EXPECT_LT(fake_.clock.steadyNow() - begin, std::chrono::minutes(1));
  EXPECT_THAT(errors(), testing::HasSubstr("cannot write to standard output"));
}

TEST_F(ProgramTest, ASystemThatLacksWhatTheMachineNeedsIsAFailureInOneLine) {
  const std::vector<std::string> arguments{"interfaces"};
  const auto lacking = [](const MachineOptions&) -> const Machine& {
    throw std::system_error(EMFILE, std::generic_category(), "epoll");
  };
  EXPECT_EQ(runProgram(arguments, {.output = output_, .errors = errors_}, lacking),
            ExitStatus::failed);
  EXPECT_THAT(errors(), testing::HasSubstr("epoll: Too many open files; raise the limit"));
  EXPECT_EQ(std::ranges::count(errors(), '\n'), 1);
}

TEST_F(ProgramTest, ALackThatTheNetworkingLibraryTellsHasTheSameRemedy) {
  const std::vector<std::string> arguments{"interfaces"};
  const auto lacking = [](const MachineOptions&) -> const Machine& {
    throw std::system_error(EMFILE, asio::system_category(), "epoll");
  };
  EXPECT_EQ(runProgram(arguments, {.output = output_, .errors = errors_}, lacking),
            ExitStatus::failed);
  EXPECT_THAT(errors(), testing::HasSubstr("epoll: Too many open files; raise the limit"));
}

TEST_F(ProgramTest, AReaderThatHasGoneIsNoFault) {
  fake_.addEthernet("en0", {192, 168, 1, 20});
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"interfaces"}, {"state", "--watch"}, {"record"}, {"--help"}}) {
    output_.setstate(std::ios::badbit);
    errors_.str({});
    const auto begin = fake_.clock.steadyNow();
    const Console console{
        .output = output_, .errors = errors_, .isReaderGone = [] { return true; }};
    EXPECT_EQ(runProgram(arguments, console,
                         [this](const MachineOptions&) -> const Machine& { return fake_.machine; }),
              ExitStatus::done);
    EXPECT_EQ(errors(), "");
    EXPECT_LT(fake_.clock.steadyNow() - begin, std::chrono::minutes(1));
  }
}

TEST_F(ProgramTest, AResultThatCannotBeWrittenIsAFailure) {
  fake_.addEthernet("en0", {192, 168, 1, 20});
  output_.setstate(std::ios::badbit);
  EXPECT_EQ(run({"interfaces"}), ExitStatus::failed);
  EXPECT_THAT(errors(), testing::HasSubstr("cannot write to standard output"));
}

}  // namespace
}  // namespace lanternfold
