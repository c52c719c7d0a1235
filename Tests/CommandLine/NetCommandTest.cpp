// `net` as a user meets it: lines and exit status, over hosts and peers that a test plays.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <thread>

#include <asio/error.hpp>
#include <gtest/gtest.h>

#include "CommandLine/InputText.h"
#include "CommandLine/Program.h"
#include "Tests/CommandLine/FakeMachine.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

class NetCommandTest : public testing::Test {
 protected:
  ExitStatus run(std::vector<std::string> arguments, const std::string& input = {}) {
    output_.str({});
    errors_.str({});
    std::istringstream stream(input);
    arguments.insert(arguments.begin(), "net");
    return runProgram(arguments, {.output = output_, .errors = errors_, .input = &stream},
                      [this](const MachineOptions&) -> const Machine& { return fake_.machine; });
  }
  /// What is written by a command that must succeed.
  std::string written(const std::vector<std::string>& arguments, const std::string& input = {}) {
    EXPECT_EQ(run(arguments, input), ExitStatus::done);
    EXPECT_EQ(errors_.str(), "");
    return output_.str();
  }
  /// One line, and what is in it.
  void expectFailure(ExitStatus status, const std::vector<std::string>& arguments,
                     const std::string& text, const std::string& output = {}) {
    EXPECT_EQ(run(arguments), status);
    EXPECT_EQ(output_.str(), output);
    EXPECT_THAT(errors_.str(), MatchesRegex("lanternfold-widgets: [^\n]+\n"));
    EXPECT_THAT(errors_.str(), HasSubstr(text));
  }

  FakeMachine fake_;
  std::ostringstream output_;
  std::ostringstream errors_;
};

TEST_F(NetCommandTest, GuessesWhatATextIs) {
  EXPECT_EQ(written({"guess", "192.168.1.1"}), "ipv4\n");
  EXPECT_EQ(written({"guess", "::1"}), "ipv6\n");
  EXPECT_EQ(written({"guess", "example-host"}), "hostname\n");
  EXPECT_EQ(written({"guess", "1.2.3"}), "hostname\n");
  EXPECT_EQ(written({"guess", "::1", "--json"}), "{\"type\":\"ipv6\"}\n");
}

TEST_F(NetCommandTest, FailsForATextThatIsNeither) {
  expectFailure(ExitStatus::failed, {"guess", "a/b"}, "\"a/b\" is no address");
  expectFailure(ExitStatus::failed, {"guess", "a b", "--json"}, "is no address", "null\n");
}

TEST_F(NetCommandTest, TakesTextsFromAFileAndFromStandardInput) {
  using std::string_literals::operator""s;
  fake_.fileSystem.makeFolder("/tmp");
  fake_.fileSystem.putFile("/tmp/address", "192.0.2.1\r\n");
  EXPECT_EQ(written({"guess", "--file", "/tmp/address"}), "ipv4\n");
  EXPECT_EQ(written({"guess"}, "::1\n"), "ipv6\n");
  EXPECT_EQ(written({"guess"}, ""), "hostname\n");
  EXPECT_EQ(written({"guess"}, "192.0.2.4\0x"s), "hostname\n");
  EXPECT_EQ(written({"guess"}, std::string(1'000'000, 'a')), "hostname\n");
  EXPECT_EQ(written({"guess"}, "\xFF\xFE"), "hostname\n");
  EXPECT_EQ(written({"validate"}, std::string(1'000'000, 'a') + "\n"), "valid\n");
  EXPECT_EQ(run({"validate"}, "a\0b"s), ExitStatus::failed);
  EXPECT_EQ(run({"validate"}, "a\n\n"), ExitStatus::failed);
  EXPECT_EQ(run({"validate"}, "a\r"), ExitStatus::failed);
  expectFailure(ExitStatus::failed, {"guess", "--file", "/tmp/none"}, "cannot read \"/tmp/none\"");
  expectFailure(ExitStatus::badArguments, {"guess", "a", "--file", "/tmp/address"},
                "exclude each other");
}

TEST_F(NetCommandTest, RefusesInputThatDoesNotEnd) {
  EXPECT_EQ(run({"guess"}, std::string(longestInputBytes + 1, 'a')), ExitStatus::failed);
  EXPECT_THAT(errors_.str(), HasSubstr("standard input is longer than 16 MiB"));
  EXPECT_EQ(written({"guess"}, std::string(longestInputBytes, 'a')), "hostname\n");
}

/// A FIFO that the machine's file system knows of, and whoever writes into it.
class NetPipeTest : public NetCommandTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(::mkfifo(pipe_.c_str(), 0600), 0);
    fake_.fileSystem.putSpecialFile(pipe_);
  }
  /// Once somebody reads.
  [[nodiscard]] std::jthread writer(std::string bytes) const {
    return std::jthread([file = pipe_, bytes = std::move(bytes)] {
      std::ofstream(file, std::ios::binary) << bytes;
    });
  }

  TemporaryFolder folder_;
  std::filesystem::path pipe_ = folder_.path() / "pipe";
};

TEST_F(NetPipeTest, IsReadUpToItsEnd) {
  {
    const std::jthread writing = writer("192.0.2.1\n");
    EXPECT_EQ(written({"guess", "--file", pipe_.string()}), "ipv4\n");
  }
  const std::jthread writing = writer(std::string(1'000'000, 'a') + "\n");
  EXPECT_EQ(written({"validate", "--file", pipe_.string()}), "valid\n");
}

TEST_F(NetPipeTest, IsRefusedWhenItDoesNotEnd) {
  const auto oldAction = std::signal(SIGPIPE, SIG_IGN);
  {
    const std::jthread writing = writer(std::string(longestInputBytes + 100'000, 'a'));
    expectFailure(ExitStatus::failed, {"guess", "--file", pipe_.string()},
                  "the pipe \"" + pipe_.string() + "\" is longer than 16 MiB");
  }
  (void)std::signal(SIGPIPE, oldAction);
}

TEST_F(NetPipeTest, IsNoOtherSpecialFile) {
  fake_.fileSystem.putSpecialFile("/dev/zero");
  expectFailure(ExitStatus::failed, {"guess", "--file", "/dev/zero"},
                "it is neither a file nor a pipe");
}

TEST_F(NetCommandTest, ValidatesNames) {
  EXPECT_EQ(written({"validate", "host-.example"}), "valid\n");
  EXPECT_EQ(written({"validate", "host-.example", "--json"}), "{\"valid\":true}\n");
  expectFailure(ExitStatus::failed, {"validate", "--", "-host"}, "\"-host\" cannot be the name");
  // The library takes it for -h.
  expectFailure(ExitStatus::badArguments, {"validate", "-host"},
                "unknown option \"-host\"; put -- before a text that begins with a hyphen");
  expectFailure(ExitStatus::failed, {"validate", ""}, "\"\" cannot be the name");
  expectFailure(ExitStatus::failed, {"validate", "a..b", "--json"}, "cannot be the name",
                "{\"valid\":false}\n");
}

TEST_F(NetCommandTest, ResolvesNames) {
  fake_.hostLookup.addAddress("both", IPv4Bytes{192, 0, 2, 7});
  fake_.hostLookup.addAddress("both", IPv6Bytes{0x20, 0x01, 0x0D, 0xB8});
  fake_.hostLookup.addAddress("new", IPv6Bytes{0x20, 0x01, 0x0D, 0xB8});
  EXPECT_EQ(written({"resolve", "both"}), "192.0.2.7\n");
  EXPECT_EQ(written({"resolve", "new"}), "2001:db8::\n");
  EXPECT_EQ(written({"resolve", "both", "--ipv6"}), "2001:db8::\n");
  EXPECT_EQ(written({"resolve"}, "both\n"), "192.0.2.7\n");
  EXPECT_EQ(written({"resolve", "both", "--json"}), "{\"ip\":\"192.0.2.7\",\"v\":4}\n");
  EXPECT_EQ(written({"resolve", "new", "--json"}), "{\"ip\":\"2001:db8::\",\"v\":6}\n");
  expectFailure(ExitStatus::failed, {"resolve", "new", "--ipv4"},
                "cannot find an IPv4 address of \"new\"");
  expectFailure(ExitStatus::failed, {"resolve", "nowhere", "--ipv6"}, "an IPv6 address");
  expectFailure(ExitStatus::failed, {"resolve", "nowhere", "--json"},
                "cannot find an address of \"nowhere\"");
  expectFailure(ExitStatus::badArguments, {"resolve", "both", "--ipv4", "--ipv6"},
                "exclude each other");
}

TEST_F(NetCommandTest, WantsACommandBelowIt) {
  expectFailure(ExitStatus::badArguments, {},
                "no command was given; \"lanternfold-widgets net --help\" lists the commands");
  expectFailure(ExitStatus::badArguments, {"whois", "example"},
                "unknown command \"whois\"; \"lanternfold-widgets net --help\"");
  expectFailure(ExitStatus::badArguments, {"guess", "--bogus"},
                "\"lanternfold-widgets net guess --help\" lists what it takes");
  EXPECT_EQ(run({"--help"}), ExitStatus::done);
  EXPECT_THAT(output_.str(), AllOf(HasSubstr("guess"), HasSubstr("validate"), HasSubstr("resolve"),
                                   HasSubstr("send")));
}

// They mean nothing to it; who hands the same ones to all commands need not know that.
TEST_F(NetCommandTest, TakesTheOptionsOfEveryCommandAndDoesNotShowThem) {
  EXPECT_EQ(written({"guess", "::1", "--skip-geoip", "--ipv4-echo", "http://192.0.2.1/",
                     "--data-dir", "/tmp", "--no-app-group"}),
            "ipv6\n");
  expectFailure(ExitStatus::badArguments, {"guess", "::1", "--ipv4-echo", "nowhere"},
                "--ipv4-echo \"nowhere\"");
  for (const char* command : {"guess", "validate", "resolve", "send"}) {
    const std::string help = written({command, "--help"});
    EXPECT_THAT(help, AllOf(HasSubstr("--file"), HasSubstr("--json"), HasSubstr("--help")));
    for (const char* other : {"--skip-geoip", "--ipv4-echo", "--ipv6-echo", "--geolocation",
                              "--sentinel", "--ca-file", "--data-dir", "app-group", "services"}) {
      EXPECT_THAT(help, Not(HasSubstr(other))) << command;
    }
  }
}

class NetSendCommandTest : public NetCommandTest {
 protected:
  /// A peer that does this once it can be reached.
  void havePeer(std::function<void(FakeConnection&)> act) {
    auto& queue = fake_.dispatch.globalQueue(QualityOfService::utility);
    queue.after(std::chrono::milliseconds(10), [this] { connection().becomeReady(); });
    queue.after(std::chrono::milliseconds(20), [this, act = std::move(act)] { act(connection()); });
  }
  FakeConnection& connection() { return *fake_.connections.connections.back(); }
};

TEST_F(NetSendCommandTest, ShowsTheReplyAndWhoSentIt) {
  havePeer([](FakeConnection& peer) { peer.reply("an answer\n"); });
  EXPECT_EQ(written({"send", "--tcp", "host.example", "7", "--text", "question"}),
            "From 192.0.2.1:7, 10 bytes:\nan answer\n");
  EXPECT_THAT(fake_.connections.targets,
              ElementsAre(ConnectionTarget{Transport::tcp, "host.example", 7}));
  EXPECT_THAT(connection().sent(), ElementsAre("question"));
  EXPECT_EQ(connection().state(), ConnectionState::cancelled);
}

TEST_F(NetSendCommandTest, WritesTheReplyAsJson) {
  havePeer([](FakeConnection& peer) { peer.reply("an answer"); });
  EXPECT_EQ(written({"send", "--udp", "192.0.2.1", "7", "--text", "question", "--json"}),
            "{\"data\":\"YW4gYW5zd2Vy\",\"text\":\"an answer\",\"from\":\"192.0.2.1:7\"}\n");
  EXPECT_EQ(fake_.connections.targets.front().transport, Transport::udp);
}

TEST_F(NetSendCommandTest, TakesTheMessageFromHexAFileAndStandardInput) {
  using std::string_literals::operator""s;
  const auto answer = [](FakeConnection& peer) { peer.reply("ok"); };
  havePeer(answer);
  (void)written({"send", "--udp", "h", "7", "--hex", "00 fF7e"});
  EXPECT_THAT(connection().sent(), ElementsAre("\x00\xFF\x7E"s));
  havePeer(answer);
  fake_.fileSystem.makeFolder("/tmp");
  fake_.fileSystem.putFile("/tmp/message", "line\n");
  (void)written({"send", "--udp", "h", "7", "--file", "/tmp/message"});
  EXPECT_THAT(connection().sent(), ElementsAre("line\n"));
  havePeer(answer);
  (void)written({"send", "--udp", "h", "7"}, "a\0b\n"s);
  EXPECT_THAT(connection().sent(), ElementsAre("a\0b\n"s));
}

TEST_F(NetSendCommandTest, FailsWithASentenceForEveryEnd) {
  const std::vector<std::string> send{"send", "--tcp", "h", "7", "--text", "q", "--timeout", "2.5"};
  havePeer([](FakeConnection&) {});
  expectFailure(ExitStatus::failed, send, "h port 7 did not reply within 2.5 s");
  havePeer([](FakeConnection& peer) { peer.replyWithoutData(); });
  expectFailure(ExitStatus::failed, send, "h port 7 replied without data");
  havePeer([](FakeConnection& peer) {
    peer.failToReceive(std::make_error_code(std::errc::connection_refused));
  });
  expectFailure(ExitStatus::failed, send, "h port 7 refuses");
  havePeer([](FakeConnection& peer) {
    peer.failToReceive(std::make_error_code(std::errc::message_size));
  });
  expectFailure(ExitStatus::failed, send, "the reply of h port 7 is longer than 16 MiB");
  havePeer([](FakeConnection& peer) { peer.fail(asio::error::host_not_found); });
  expectFailure(ExitStatus::failed, send, "cannot find the host \"h\"");
  havePeer([](FakeConnection& peer) {
    peer.fail(std::make_error_code(std::errc::network_unreachable));
  });
  expectFailure(ExitStatus::failed, send, "Network is unreachable");
  havePeer([](FakeConnection& peer) { peer.cancel(); });
  expectFailure(ExitStatus::failed, send, "failed; try it again");
}

TEST_F(NetSendCommandTest, AnInterruptionCancels) {
  havePeer([](FakeConnection&) {});
  fake_.mainLoop.interruptedAfter = std::chrono::minutes(1);
  expectFailure(ExitStatus::failed, {"send", "--tcp", "h", "7", "--text", "q"}, "was cancelled");
  EXPECT_EQ(connection().state(), ConnectionState::cancelled);
}

TEST_F(NetSendCommandTest, NamesWhatWasNotUnderstood) {
  const auto expectBad = [this](std::vector<std::string> arguments, const std::string& text) {
    arguments.insert(arguments.begin(), "send");
    expectFailure(ExitStatus::badArguments, arguments, text);
    EXPECT_THAT(fake_.connections.targets, IsEmpty());
  };
  expectBad({"h", "7"}, "--tcp or --udp");
  expectBad({"--tcp", "--udp", "h", "7"}, "--tcp or --udp");
  expectBad({"--tcp", "h"}, "PORT");
  expectBad({"--tcp"}, "HOST");
  expectBad({"--tcp", "", "7"}, "HOST takes");
  for (const char* port : {"0", "65536", "http", "", "7 ", "99999999999999999999", "0x7", "+7"}) {
    expectBad({"--tcp", "h", port}, "PORT takes a whole number from 1 to 65535");
  }
  for (const char* timeout : {"0", "soon", "", "1e9", "nan", "inf"}) {
    expectBad({"--tcp", "h", "7", "--timeout", timeout}, "--timeout takes seconds above 0");
  }
  for (const char* hex : {"0", "0g", "00 0", "0x00", "00,11"}) {
    expectBad({"--tcp", "h", "7", "--hex", hex}, "--hex takes pairs");
  }
  expectBad({"--tcp", "h", "7", "--text", "a", "--hex", "00"}, "exclude each other");
}

TEST_F(NetSendCommandTest, TakesAnAddressInBrackets) {
  const std::vector<std::pair<std::string, std::string>> hosts{
      {"[::1]", "::1"},
      {"[fe80::1%eth0]", "fe80::1%eth0"},
      // No addresses: nothing is guessed.
      {"[host]", "[host]"},
      {"[192.0.2.1]", "[192.0.2.1]"},
      {"[]", "[]"},
      {"[", "["},
      {"[::1", "[::1"},
  };
  for (const auto& [given, host] : hosts) {
    havePeer([](FakeConnection& peer) { peer.reply("ok"); });
    (void)written({"send", "--tcp", given, "7", "--text", "q"});
    EXPECT_EQ(fake_.connections.targets.back().host, host);
  }
}

TEST_F(NetSendCommandTest, SaysWhichFileItCannotRead) {
  expectFailure(ExitStatus::failed, {"send", "--tcp", "h", "7", "--file", "/none"},
                "cannot read \"/none\": No such file or directory");
  EXPECT_THAT(fake_.connections.targets, IsEmpty());
}

}  // namespace
}  // namespace lanternfold
