// `echo-service` as a user meets it: lines and exit status, over a machine of fakes that listens on
// the loopback.
#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/Commands/EchoServiceCommand.h"
#include "CommandLine/Program.h"
#include "EchoService/GeolocationTableJson.h"
#include "Tests/CommandLine/FakeMachine.h"

namespace lanternfold {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

class EchoServiceCommandTest : public testing::Test {
 protected:
  ExitStatus run(std::vector<std::string> arguments) {
    output_.str({});
    errors_.str({});
    arguments.insert(arguments.begin(), "echo-service");
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions&) -> const Machine& { return fake_.machine; });
  }
  /// One line, and what is in it.
  void expectFailure(ExitStatus status, const std::vector<std::string>& arguments,
                     const std::string& text) {
    EXPECT_EQ(run(arguments), status);
    EXPECT_EQ(output_.str(), "");
    EXPECT_THAT(errors_.str(), MatchesRegex("lanternfold-widgets: [^\n]+\n"));
    EXPECT_THAT(errors_.str(), HasSubstr(text));
  }

  FakeMachine fake_;
  std::ostringstream output_;
  std::ostringstream errors_;
};

TEST_F(EchoServiceCommandTest, SaysInOneLineWhereItListensAndIsDoneWhenItIsInterrupted) {
  EXPECT_EQ(run({"--listen", "127.0.0.1:0"}), ExitStatus::done);
  EXPECT_THAT(output_.str(),
              MatchesRegex("Listening on 127\\.0\\.0\\.1:[1-9][0-9]* until interrupted\\.\n"));
  EXPECT_EQ(run({"--listen", "127.0.0.1:0", "--listen", "[::1]:0", "--listen=127.0.0.2:0"}),
            ExitStatus::done);
  EXPECT_THAT(output_.str(),
              MatchesRegex("Listening on 127\\.0\\.0\\.1:[1-9][0-9]*, \\[::1\\]:[1-9][0-9]* and "
                           "127\\.0\\.0\\.2:[1-9][0-9]* until interrupted\\.\n"));
  EXPECT_EQ(errors_.str(), "");
}

TEST_F(EchoServiceCommandTest, ItsHelpNamesItsOptions) {
  EXPECT_EQ(run({"--help"}), ExitStatus::done);
  for (const char* option : {"--listen", "--geolocation-table", "--trust", "--connections"}) {
    EXPECT_THAT(output_.str(), HasSubstr(option));
  }
}

TEST_F(EchoServiceCommandTest, ReadsItsTable) {
  fake_.fileSystem.putFile("/table.json",
                           R"({"10.0.0.0/8":{"isp":"a","countryCode":"IT","as":""}})");
  EXPECT_EQ(run({"--listen", "127.0.0.1:0", "--geolocation-table", "/table.json"}),
            ExitStatus::done);
}

TEST_F(EchoServiceCommandTest, SaysWhatIsWrongWithItsTable) {
  const std::vector<std::string> arguments{"--listen", "127.0.0.1:0", "--geolocation-table",
                                           "/table.json"};
  expectFailure(ExitStatus::failed, arguments, "cannot read the geolocation table /table.json: ");
  fake_.fileSystem.putFile("/table.json", R"({"10.0.0.0/8":{"isp":"a","as":"b"}})");
  expectFailure(ExitStatus::failed, arguments,
                "cannot use the geolocation table /table.json: \"countryCode\" of \"10.0.0.0/8\" "
                "is missing");
  fake_.fileSystem.putFile("/table.json", std::string(longestGeolocationTableBytes + 1, ' '));
  expectFailure(ExitStatus::failed, arguments, "cannot read the geolocation table /table.json: ");
}

TEST_F(EchoServiceCommandTest, SaysWhereItCannotListen) {
  expectFailure(ExitStatus::failed, {"--listen", "192.0.2.1:0"},
                "cannot listen on 192.0.2.1:0: this machine does not have that address; ");
}

TEST_F(EchoServiceCommandTest, WantsToKnowWhereToListen) {
  expectFailure(ExitStatus::badArguments, {}, "--listen");
  expectFailure(ExitStatus::badArguments, {"--listen", "localhost:80"},
                "--listen takes an address and a port, as in 192.0.2.1:8080 or "
                "[2001:db8::1]:8080, not \"localhost:80\"");
  expectFailure(ExitStatus::badArguments, {"--listen", "[::]:80", "--listen", "[0::0]:80"},
                "--listen names \"[0::0]:80\" twice");
}

TEST_F(EchoServiceCommandTest, TrustsAddressesAndNetworksAndNothingElse) {
  EXPECT_EQ(run({"--listen", "127.0.0.1:0", "--trust", "127.0.0.1", "--trust", "fd00::/8"}),
            ExitStatus::done);
  expectFailure(ExitStatus::badArguments, {"--listen", "127.0.0.1:0", "--trust", "proxy"},
                "--trust \"proxy\" is neither an address nor a network");
}

TEST_F(EchoServiceCommandTest, BoundsTheNumberOfConnections) {
  EXPECT_EQ(planEchoService({.listen = {"[::]:80"}, .connections = "7"}).value().limits.connections,
            7U);
  for (const char* number : {"0", "-1", "10001", "many", "1.5"}) {
    expectFailure(ExitStatus::badArguments, {"--listen", "127.0.0.1:0", "--connections", number},
                  "--connections");
  }
}

TEST_F(EchoServiceCommandTest, AnOutputThatTakesNothingIsAFailure) {
  output_.setstate(std::ios::badbit);
  EXPECT_EQ(run({"--listen", "127.0.0.1:0"}), ExitStatus::failed);
  EXPECT_THAT(errors_.str(), HasSubstr("standard output"));
}

}  // namespace
}  // namespace lanternfold
